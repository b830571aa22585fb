#include "Net/Arguments.h"

#include <getopt.h>

#include <charconv>
#include <climits>
#include <map>
#include <set>

#include "Support/OptionError.h"

namespace OrvaneNet {
namespace {

enum Option {
    kJson = 256,
    kVerbose,
    kWatch,
    kCount,
    kTimeOut,
    kMaxTtl,
    kDeadline,
    kHeader,
    kData,
    kDataFile,
    kOutput,
    kUrl,
    kPauseAt,
    kVersion
};

const option kOptions[] = {
    {"json", no_argument, nullptr, kJson},
    {"verbose", no_argument, nullptr, kVerbose},
    {"watch", no_argument, nullptr, kWatch},
    {"count", required_argument, nullptr, kCount},
    {"timeout", required_argument, nullptr, kTimeOut},
    {"max-hops", required_argument, nullptr, kMaxTtl},
    {"deadline", required_argument, nullptr, kDeadline},
    {"header", required_argument, nullptr, kHeader},
    {"data", required_argument, nullptr, kData},
    {"data-file", required_argument, nullptr, kDataFile},
    {"output", required_argument, nullptr, kOutput},
    {"url", required_argument, nullptr, kUrl},
    {"pause-at", required_argument, nullptr, kPauseAt},
    {"version", no_argument, nullptr, kVersion},
    {"help", no_argument, nullptr, 'h'},
    {nullptr, 0, nullptr, 0},
};

struct Command {
    size_t words;  // that it takes
    bool takesHost;
    std::set<int> options;  // beside --json, --verbose and --deadline, which all take
};

const std::map<std::string, Command> kCommands = {
    {"state", {0, false, {kWatch}}},         {"ping", {1, true, {kCount, kTimeOut}}},
    {"traceroute", {1, true, {kMaxTtl}}},    {"lookup", {1, true, {}}},
    {"get", {1, false, {kHeader, kOutput}}}, {"post", {1, false, {kHeader, kData, kDataFile, kOutput}}},
    {"download", {2, false, {kPauseAt}}},    {"diagnose", {1, true, {kCount, kTimeOut, kMaxTtl, kUrl}}},
};

const char* NameOf(int code) {
    for (const option& known : kOptions)
        if (known.name && known.val == code) return known.name;
    return "";
}

template <typename T>
bool TakeNumber(int code, long long least, long long most, T& out, std::string& error) {
    const std::string text = optarg;
    long long number = 0;
    const auto [stop, problem] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (problem == std::errc() && stop == text.data() + text.size() && number >= least && number <= most) {
        out = static_cast<T>(number);
        return true;
    }
    error = std::string("--") + NameOf(code) + " takes a number from " + std::to_string(least) + " to " +
            std::to_string(most) + ", not \"" + text + "\"";
    return false;
}

bool TakeHeader(Arguments& out, std::string& error) {
    const std::string text = optarg;
    const size_t colon = text.find(':');
    if (colon == 0 || colon == std::string::npos) {
        error = "--header takes \"Name: value\", not \"" + text + "\"";
        return false;
    }
    const size_t value = text.find_first_not_of(" \t", colon + 1);
    out.headers.emplace_back(text.substr(0, colon), value == std::string::npos ? "" : text.substr(value));
    return true;
}

bool TakeOption(int code, Arguments& out, std::string& error) {
    switch (code) {
        case kJson:
            return out.json = true;
        case kVerbose:
            return out.verbose = true;
        case kWatch:
            return out.watch = true;
        case kVersion:
            return out.version = true;
        case 'h':
            return out.help = true;
        case kCount:
            return TakeNumber(code, 1, 255, out.count, error);
        case kTimeOut:
            return TakeNumber(code, 1, 255, out.timeOut, error);
        case kMaxTtl:
            return TakeNumber(code, 1, 255, out.maxTtl, error);
        case kDeadline:
            return TakeNumber(code, 1, 86400, out.deadline, error);
        case kPauseAt:
            return TakeNumber(code, 1, LLONG_MAX, out.pauseAt, error);
        case kHeader:
            return TakeHeader(out, error);
        case kData:
            out.body = optarg;
            return true;
        case kDataFile:
            out.bodyFile = optarg;
            return true;
        case kOutput:
            out.output = optarg;
            return true;
        case kUrl:
            out.url = optarg;
            return true;
        default:
            return false;
    }
}

bool TakeWords(std::vector<std::string> words, const std::set<int>& given, Arguments& out, std::string& error) {
    if (words.empty()) {
        error = "a command is wanted; see --help";
        return false;
    }
    out.command = words[0];
    out.words.assign(words.begin() + 1, words.end());
    const auto command = kCommands.find(out.command);
    if (command == kCommands.end()) {
        error = out.command + ": no such command; see --help";
        return false;
    }
    if (out.words.size() != command->second.words) {
        error = out.command + ": wrong number of words behind the command; see --help";
        return false;
    }
    for (const int code : given) {
        if (code == kJson || code == kVerbose || code == kDeadline || command->second.options.contains(code)) continue;
        error = out.command + " takes no --" + NameOf(code) + "; see --help";
        return false;
    }
    for (const std::string& word : out.words) {
        if (!word.empty()) continue;
        error = out.command + ": an empty word behind the command";
        return false;
    }
    if (!command->second.takesHost) return true;
    // A name has 253 characters at most. The library separates the fields of its results by "#".
    if (out.words[0].size() <= 253 && out.words[0].find('#') == std::string::npos) return true;
    error = out.command + ": no host's name or address";
    return false;
}

}  // namespace

bool ParseArguments(int count, char** arguments, Arguments& out, std::string& error) {
    opterr = 0;
    std::set<int> given;
    for (int code; (code = getopt_long(count, arguments, ":h", kOptions, nullptr)) != -1;) {
        if (code == '?' || code == ':') {
            error = OrvaneTools::OptionError(code, arguments);
            return false;
        }
        if (!TakeOption(code, out, error)) return false;
        given.insert(code);
    }
    if (out.help || out.version) return true;
    return TakeWords({arguments + optind, arguments + count}, given, out, error);
}

const char kHelpText[] =
    R"(usage: orvane-net [OPTION]... COMMAND [WORD]...

The network as OrvaneCore sees it, through the library's own operations.

Commands
  state                 how this machine is connected; with --watch, each change too, until it is stopped
  ping HOST             sends all packets at once and counts the replies
  traceroute HOST       the hops towards the host, three probes each
  lookup HOST           the IPv4 addresses of a name
  get URL               the body goes to standard output; redirects are followed
  post URL              the same with a body of its own
  download URL FILE     the file appears when it is whole, in place of what lay there
  diagnose HOST         one report to attach to a ticket: state, lookup, ping, traceroute, and one GET with its times

Options
  --count N             packets of a ping, 1 to 255 (default: 10)
  --timeout S           seconds that a ping waits for replies, 1 to 255 (default: 3)
  --max-hops N          hops of a traceroute, 1 to 255 (default: 30)
  --header "NAME: TEXT" of get and post; may be given more than once
  --data TEXT           body of a post
  --data-file FILE      the same from a file; "-" is standard input
  --output FILE         where get and post put the body
  --url URL             what diagnose asks for (default: http://HOST/)
  --pause-at BYTES      pauses a download there and goes on, to show it
  --deadline S          gives up after so many seconds (default: as long as what was asked may take; 120 for a lookup and
                        a request; none for a download and state --watch)
  --json                one JSON object; for state --watch one a line
  --verbose             the library's own log lines too, on standard error
  --version, -h, --help
  --                    what follows is no option

Exit status
  0  done; of a traceroute: at least one hop answered
  1  the host, the name or the server does not answer, or answers with an error
  2  wrong use, a file that cannot be read or written, or a system that does not allow this process any ICMP
)";

}  // namespace OrvaneNet
