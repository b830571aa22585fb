// orvane-devserver: configuration and trace ids for games on this desk.
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <ctime>
#include <string>
#include <vector>

#include "DevServer/Arguments.h"
#include "DevServer/HttpServer.h"
#include "DevServer/Lint/LintCommand.h"
#include "Support/PrintableText.h"

namespace OrvaneDevServer {
namespace {

enum ExitStatus { kDone = 0, kCannot = 1, kWrongUse = 2 };

int Fail(ExitStatus status, const std::string& what) {
    fprintf(stderr, "orvane-devserver: %s\n", what.c_str());
    return status;
}

// A terminal takes what a request holds for orders of its own, so control characters do not get there. One write a
// line: lines of several threads do not mix.
void Say(const std::string& text) {
    char clock[16];
    const time_t now = time(nullptr);
    tm parts{};
    localtime_r(&now, &parts);
    strftime(clock, sizeof clock, "%H:%M:%S ", &parts);
    std::string line = clock + text + "\n";
    for (size_t i = 0; i + 1 < line.size(); ++i)
        if (static_cast<unsigned char>(line[i]) < ' ' || line[i] == 0x7F) line[i] = '?';
    fwrite(line.data(), 1, line.size(), stderr);
}

sigset_t EndSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    return signals;
}

int Serve(const Arguments& arguments) {
    const sigset_t signals = EndSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);  // before there are threads: this one alone waits for them

    ServerOptions options;
    options.folder = arguments.folder;
    options.faults = arguments.faults;
    options.isStrict = arguments.isStrict;
    options.keyFiles = arguments.keyFiles;
    if (!arguments.isQuiet) options.say = Say;
    DevServer server(options);
    std::string error;
    if (!server.Open(error)) return Fail(kCannot, error);
    HttpServer http(server);
    if (!http.Bind(arguments.host, arguments.port, error)) return Fail(kCannot, error);

    std::atomic<bool> hasFailed{false};
    http.Start([&hasFailed] {
        hasFailed = true;
        kill(getpid(), SIGTERM);
    });
    const bool isIpv6 = arguments.host.find(':') != std::string::npos;
    printf("ready http://%s:%d\n", (isIpv6 ? "[" + arguments.host + "]" : arguments.host).c_str(), http.Port());
    fflush(stdout);
    if (!arguments.isQuiet) Say("the console is at that address in a browser");

    int signal = 0;
    sigwait(&signals, &signal);
    pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);  // a second one ends it at once
    http.Stop();
    return hasFailed ? Fail(kCannot, "no connection can be taken any more") : kDone;
}

int Lint(const Arguments& arguments) {
    const LintReport report = LintPaths(arguments.lintPaths);
    for (const std::string& line : report.lines)
        printf("%s\n", OrvaneTools::PrintableText(line).c_str());
    for (const std::string& problem : report.problems)
        Fail(kWrongUse, OrvaneTools::PrintableText(problem));
    if (!report.problems.empty()) return kWrongUse;
    return report.hasFault || (arguments.isStrict && !report.lines.empty()) ? kCannot : kDone;
}

int Main(const std::vector<std::string>& words) {
    Arguments arguments;
    std::string error;
    if (!ParseArguments(words, arguments, error)) return Fail(kWrongUse, error);
    if (arguments.action == Action::kServe) return Serve(arguments);
    if (arguments.action == Action::kLint) return Lint(arguments);
    fputs(arguments.action == Action::kHelp ? kHelpText : "orvane-devserver " ORVANE_VERSION "\n", stdout);
    return kDone;
}

}  // namespace
}  // namespace OrvaneDevServer

int main(int count, char** words) {
    return OrvaneDevServer::Main({words + 1, words + count});
}
