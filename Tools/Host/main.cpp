// orvane-host: a game-like process around the library. See Options.cpp for its manual.
#include <errno.h>
#include <fcntl.h>
#include <string.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "AppDelegate.h"
#include "EventScript.h"
#include "GameLogger.h"
#include "HostLoop.h"
#include "LineFeed.h"
#include "OperationLoad.h"
#include "Options.h"
#include "Orvane/InfoPlist.h"
#include "Orvane/OrvaneCore.h"
#include "Orvane/RunTime.h"
#include "PluginLoader.h"
#include "ServerManifest.h"
#include "Support/ContainerVariable.h"
#include "Support/LibraryLines.h"

using namespace OrvaneHost;

namespace {

// The library speaks while it loads; that goes in front of no help, and of no error in the command line.
void BeforeTheLibraryLoads(int, char**, char**) {
    OrvaneTools::HoldLibraryLines();
}
ORVANE_BEFORE_LIBRARIES(BeforeTheLibraryLoads);

// The manifest that was asked for, by option or environment, is to be one. Without it the library would go on as if it
// were empty.
bool CheckManifest(const std::string& option) {
    const char* const environment = getenv("ORVANE_INFO_PLIST");
    const std::string path = !option.empty() || !environment ? option : environment;
    return path.empty() || IsManifest(path);
}

}  // namespace

int main(int count, char** arguments) {
    const std::string loadLines = OrvaneTools::TakeLibraryLines();
    Options options;
    switch (ParseOptions(count, arguments, options)) {
        case ParseResult::kHelp:
            PrintUsage();
            return 0;
        case ParseResult::kVersion:
            printf("orvane-host %s\n", orvanecore_get_version());
            return 0;
        case ParseResult::kWrong:
            return 2;
        case ParseResult::kRun:
            break;
    }

    fputs(loadLines.c_str(), stderr);
    std::string problem;
    OrvaneTools::ContainerOfEnvironment(problem);
    if (!problem.empty()) orvane_console_log("orvane-host: %s", problem.c_str());
    if (!CheckManifest(options.infoPlistPath)) return 1;
    if (!options.infoPlistPath.empty() && !gs_OrvaneSetInfoPlist(options.infoPlistPath.c_str()))
        orvane_console_log("orvane-host: the library has read its manifest before");
    if (!options.serverUrl.empty() && !UseServer(options.serverUrl, options.infoPlistPath)) return 1;

    int input = STDIN_FILENO;
    if (!options.scriptPath.empty()) {
        input = open(options.scriptPath.c_str(), O_RDONLY | O_CLOEXEC);
        if (input < 0) {
            orvane_console_log("orvane-host: cannot open %s: %s", options.scriptPath.c_str(), strerror(errno));
            return 1;
        }
    }
    const int signals = WatchStopSignals();
    AppDelegate delegate;
    if (!options.pluginFolder.empty() && !LoadPlugins(options.pluginFolder)) return 1;

    GameLogger logger(options);
    LineFeed feed(options, logger);
    EventScript script(options, delegate, logger, feed);
    HostLoop(input, signals, script, feed).Run();
    TellOperations("at the end");
    orvane_console_log("orvane-host: ends");
    return script.HasFailed() ? 1 : 0;
}
