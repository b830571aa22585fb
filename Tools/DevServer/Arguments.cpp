#include "DevServer/Arguments.h"

#include <getopt.h>

#include "DevServer/PageGuard.h"
#include "DevServer/Query.h"
#include "Support/OptionError.h"

namespace OrvaneDevServer {
namespace {

enum Option : int { kPort = 256, kHost, kFault, kKey, kStrict, kVersion };

const option kOptions[] = {
    {"port", required_argument, nullptr, kPort},
    {"host", required_argument, nullptr, kHost},
    {"fault", required_argument, nullptr, kFault},
    {"key", required_argument, nullptr, kKey},
    {"strict", no_argument, nullptr, kStrict},
    {"quiet", no_argument, nullptr, 'q'},
    {"help", no_argument, nullptr, 'h'},
    {"version", no_argument, nullptr, kVersion},
    {nullptr, 0, nullptr, 0},
};

bool TakePort(const std::string& value, Arguments& arguments, std::string& error) {
    uint64_t port = 0;
    if (!ReadDecimal(value, port) || port > 65535) {
        error = "--port: \"" + value + "\" is no number from 0 to 65535";
        return false;
    }
    arguments.port = static_cast<int>(port);
    return true;
}

bool TakeHost(const std::string& value, Arguments& arguments, std::string& error) {
    const bool isIpv6 = value == "::1";
    if (!isIpv6 && (value.find(':') != std::string::npos || !IsLoopbackHost(value))) {
        error = "--host: \"" + value + "\" is no loopback address; the server is for this machine alone";
        return false;
    }
    arguments.host = value;
    return true;
}

bool TakeFault(const std::string& value, Arguments& arguments, std::string& error) {
    if (ParseFault(value, arguments.faults.emplace_back(), error)) return true;
    error = "--fault: " + error;
    return false;
}

bool TakeOption(int option, const std::string& value, Arguments& arguments, std::string& error) {
    switch (option) {
        case kPort:
            return TakePort(value, arguments, error);
        case kHost:
            return TakeHost(value, arguments, error);
        case kFault:
            return TakeFault(value, arguments, error);
        case kKey:
            arguments.keyFiles.push_back(value);
            return true;
        case kStrict:
            arguments.isStrict = true;
            return true;
        case 'q':
            arguments.isQuiet = true;
            return true;
        case kVersion:
            arguments.action = Action::kVersion;
            return true;
        default:
            arguments.action = Action::kHelp;
            return true;
    }
}

bool TakeLint(const std::vector<std::string>& words, Arguments& arguments, std::string& error) {
    if (arguments.action == Action::kServe) arguments.action = Action::kLint;
    arguments.lintPaths.assign(words.begin() + 1, words.end());
    if (!arguments.lintPaths.empty() || arguments.action != Action::kLint) return true;
    error = "lint: which folder or file? (A folder to serve that is called so is \"./lint\")";
    return false;
}

}  // namespace

bool ParseArguments(const std::vector<std::string>& words, Arguments& arguments, std::string& error) {
    std::vector<std::string> copies = {"orvane-devserver"};
    copies.insert(copies.end(), words.begin(), words.end());
    std::vector<char*> pointers;
    for (std::string& word : copies)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    const int count = static_cast<int>(copies.size());
    optind = 0;  // start over
    opterr = 0;
    for (;;) {
        const int found = getopt_long(count, pointers.data(), ":hq", kOptions, nullptr);
        if (found == -1) break;
        if (found == '?' || found == ':') {
            error = OrvaneTools::OptionError(found, pointers.data());
            return false;
        }
        if (!TakeOption(found, optarg ? optarg : "", arguments, error)) return false;
    }
    const std::vector<std::string> rest(pointers.data() + optind, pointers.data() + count);
    if (!rest.empty() && rest[0] == "lint") return TakeLint(rest, arguments, error);
    if (!rest.empty()) arguments.folder = rest[0];
    if (rest.size() <= 1 && !arguments.folder.empty()) return true;
    error = arguments.folder.empty() ? "the folder's name is empty" : "one folder is wanted; see --help";
    return false;
}

const char kHelpText[] =
    R"(usage: orvane-devserver [OPTION]... [FOLDER]
       orvane-devserver lint [--strict] FOLDER|FILE...

The server that OrvaneCore talks to, for the desk: it serves configuration and trace ids to games that run on this
machine, takes the files that it orders from them, says what the client will do with each answer, reports every request
that breaks its protocol, and misbehaves on order. Everything it keeps is in FOLDER ("devserver" if none is named),
which is made if it is not there:

  modules/NAME.json        the configuration of the module NAME for all devices: an object of keys, with strings and
                           integers. Read anew at each request: an edited file counts at once
  devices/DID/NAME.json    keys that go before those, for one device
  rule_id.json             the rule id, which rises with each change
  uploads/DID/ID/          what a device has sent: upload.zip, and files/ that were in it
  events/NAME.jsonl        events of games on this machine, if PELL_EVENTS names the file
  journal.jsonl            every request, one JSON object a line

All of it is shown, and modules are edited, in a browser at the server's address.

lint says what the client will make of what it is to be sent: of a folder as above, of the file of a module, or of an
answer that any server gave. One finding a line; notes alone are no fault, unless --strict is given.

When it can be reached it writes "ready http://ADDRESS:PORT" to standard output. A game is pointed at that address by
"RemoteConfigUrl". SIGTERM and SIGINT end it.

Options
  --port N             the port, 8765 if none is given; 0 for any free one
  --host ADDRESS       the loopback address to listen at, 127.0.0.1 if none is given
  --fault ORDER        a fault; may be given several times, and several may meet in one request
  --key FILE           a private key, as orvane-log takes it, for enciphered logs that devices send; also several
  --strict             answer a request that breaks its protocol with an error
  -q, --quiet          nothing on standard error but what concerns the server itself
  --version            the version
  -h, --help           this text

Faults: PROTOCOL:WHICH:WHAT
  PROTOCOL             config, traceids, upload (the announcement and each part count)
  WHICH                3 (the third request), 3-5, 3- (from then on), +1 (the next), * (all)
  WHAT                 500             the status, with a web server's error page
                       500:json        the status, with the right answer
                       delay:MS        wait so many milliseconds
                       hold            wait until released
                       redirect[:URL]  to that address; without one to the same request again
                       empty           no byte
                       {}              an empty object
                       hostile[:NAME]  JSON that no honest server sends, one after the other or the one of that name
                       hostile:SEED    the right answer with some of its bytes changed
                       ret:CODE        the server's error CODE
                       rule:N          the rule id N (config alone); rule:-N, rule:+N lower or higher by N
                       next:N          "next_pos" is N (upload alone); next:+N, next:+-N further or back by N;
                                       next:same where the part began
                       url[:URL]       another "upload_url" of this server, or that one (upload alone)
                       big[:BYTES]     a sound answer of 100 MB, or of so many bytes

Orders while it runs (each needs a loopback Host, and no web page but its own may give one)
  GET    /_orvane/status     counts, held requests, rule id, faults
  POST   /_orvane/faults     faults, one a line of the body
  DELETE /_orvane/faults     takes all faults back
  POST   /_orvane/release    lets the held requests go on

Exit status
  0  ended by a signal; nothing wrong found
  1  the folder, the port or a key cannot be had; the lint found faults
  2  wrong use
)";

}  // namespace OrvaneDevServer
