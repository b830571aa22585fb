#include "Options.h"

#include <getopt.h>

#include <charconv>
#include <climits>
#include <cstdio>

#include "Support/OptionError.h"

namespace OrvaneHost {
namespace {

// Also the manual of the events; the table in EventScript.cpp goes with it.
constexpr const char* kUsage =
    R"(usage: orvane-host [options] [< EVENTS]

A game-like process: links the library as a game does, opens sibling plugins and sends itself the events of an
application, one for each line of a script.

  --plugins DIR            open every *.so of the folder, in name order
  --info-plist FILE        the application's manifest, XML or binary (default: ORVANE_INFO_PLIST of the environment, else
                           Info.plist beside this program); its settings go before --log-mode and --console
  --server URL             the configuration server, as if the manifest named it
  --script FILE            read the events from a file (default: standard input)
  --module NAME            name of the host's logger (default: Game)
  --log-mode N             its "LogMode": 0 plain, 1 deflated, 2 deflated and encrypted (default: 2)
  --console N              its "LogConsoleOutput": at least 1 prints every line (default: 0)
  --threads N              after launch, log from N threads at once (default: 0, no load)
  --lines N                lines that each thread logs; 0: until the process ends (default: 1000)
  --first N                number of each thread's first line (default: 1)
  --lines-per-second N     pace of each thread, and of log-file; 0: as fast as it goes (default: 0)
  --ack-fd FD              after each log call of a thread or of log-file returned, write "thread sequence" and a
                           newline there; the threads are numbered from 1, log-file is thread 0 and the sequence
                           is the line's number
  --version, -h, --help

events, one a line; blank lines and lines that begin with # are skipped:
  init                     the script layer's first call
  launch                   the application has finished launching: starts the library
  background | foreground | resign-active | active
                           did enter background, will enter foreground, will resign active, did become active
  open-url URL             the application is asked to open a URL
  memory-warning           the system is short of memory
  orientations             the system asks for the orientations that the window supports
  log LEVEL TEXT           log one line; LEVEL is debug, info, warning, event, error or its number, 0 to 4
  log-file PATH            log each line of a text file
  sleep MS                 go on with the next event after that many milliseconds
  create | start | pause | resume | stop | destroy
                           a coarse stage of the application, for native observers; pause and resume go by way of the
                           older application object, as did enter background and will enter foreground
  operations N             queue N operations of 5 ms on the library's shared queue, and one that repeats; the console
                           says when the N have run, and at a release and the end how many have
  span NAME [KEY=VALUE..]  trace a span of that name with these tags; the console says its text, or that there is no
                           tracing (the setting YarrowEnable of the section OrvaneCore turns it on)
  network                  say how the device is connected, in detail, and from now on say each change of it
  modem RADIO MCC MNC      play a modem: a cellular link (wwan0) is by that radio (GPRS, WCDMA, LTE, NR, ...) and
                           carrier
  fetch                    ask the configuration server
  set-url URL              the configuration server from now on: asks it; another one than before has the last answer
                           forgotten
  clear                    forget the server and its last answer
  pre-shutdown | shutdown  the two walks of an orderly stop over all plugins
  release                  take the base library down; the process goes on and may launch again
  quit                     leave at once, as at the end of the events

The end of the events ends the host; with a load running, the end of the load does. SIGTERM and SIGINT end it in
order: the application will terminate, pre-shutdown, shutdown. Exit status: 0; 1 for a folder, script or manifest that
cannot be read, and at the end if there was an event that was not understood or could not be performed; 2 for a wrong
command line.
)";

enum Option {
    kPlugins = 256,
    kInfoPlist,
    kServer,
    kScript,
    kModule,
    kLogMode,
    kConsole,
    kThreads,
    kLines,
    kFirst,
    kPace,
    kAckFd,
    kVersion
};

const option kOptions[] = {
    {"plugins", required_argument, nullptr, kPlugins},
    {"info-plist", required_argument, nullptr, kInfoPlist},
    {"server", required_argument, nullptr, kServer},
    {"script", required_argument, nullptr, kScript},
    {"module", required_argument, nullptr, kModule},
    {"log-mode", required_argument, nullptr, kLogMode},
    {"console", required_argument, nullptr, kConsole},
    {"threads", required_argument, nullptr, kThreads},
    {"lines", required_argument, nullptr, kLines},
    {"first", required_argument, nullptr, kFirst},
    {"lines-per-second", required_argument, nullptr, kPace},
    {"ack-fd", required_argument, nullptr, kAckFd},
    {"version", no_argument, nullptr, kVersion},
    {"help", no_argument, nullptr, 'h'},
    {nullptr, 0, nullptr, 0},
};

template <typename T>
bool Take(const char* name, uint64_t most, T& out) {
    uint64_t number = 0;
    if (!ParseNumber(optarg, 0, most, number)) {
        fprintf(stderr, "orvane-host: --%s takes a number from 0 to %llu, not \"%s\"\n", name,
                static_cast<unsigned long long>(most), optarg);
        return false;
    }
    out = static_cast<T>(number);
    return true;
}

bool TakeText(const char* name, std::string& out) {
    out = optarg;
    if (out.empty()) fprintf(stderr, "orvane-host: --%s must not be empty\n", name);
    return !out.empty();
}

bool Apply(int code, Options& options) {
    switch (code) {
        case kPlugins:
            return TakeText("plugins", options.pluginFolder);
        case kInfoPlist:
            return TakeText("info-plist", options.infoPlistPath);
        case kServer:
            return TakeText("server", options.serverUrl);
        case kScript:
            return TakeText("script", options.scriptPath);
        case kModule:
            return TakeText("module", options.module);
        case kLogMode:
            return Take("log-mode", INT_MAX, options.logMode);
        case kConsole:
            return Take("console", INT_MAX, options.consoleOutput);
        case kThreads:
            return Take("threads", 1024, options.threads);
        case kLines:
            return Take("lines", UINT64_MAX, options.lines);
        case kFirst:
            return Take("first", UINT64_MAX, options.firstSequence);
        case kPace:
            return Take("lines-per-second", 1000000, options.linesPerSecond);
        case kAckFd:
            return Take("ack-fd", INT_MAX, options.acknowledgeDescriptor);
        default:
            return false;
    }
}

}  // namespace

ParseResult ParseOptions(int count, char** arguments, Options& options) {
    opterr = 0;
    int code;
    while ((code = getopt_long(count, arguments, ":h", kOptions, nullptr)) != -1) {
        if (code == 'h') return ParseResult::kHelp;
        if (code == kVersion) return ParseResult::kVersion;
        if (code == '?' || code == ':') {
            fprintf(stderr, "orvane-host: %s\n", OrvaneTools::OptionError(code, arguments).c_str());
            return ParseResult::kWrong;
        }
        if (!Apply(code, options)) return ParseResult::kWrong;
    }
    if (optind < count) {
        fprintf(stderr, "orvane-host: unexpected argument \"%s\"\n", arguments[optind]);
        return ParseResult::kWrong;
    }
    return ParseResult::kRun;
}

void PrintUsage() {
    fputs(kUsage, stdout);
}

bool ParseNumber(const std::string& text, uint64_t least, uint64_t most, uint64_t& out) {
    uint64_t number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end || number < least || number > most) return false;
    out = number;
    return true;
}

}  // namespace OrvaneHost
