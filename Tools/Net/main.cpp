// orvane-net: how the library sees the network. See Arguments.cpp for its manual.
#include <cstdio>
#include <map>

#include "Net/Arguments.h"
#include "Net/Commands.h"
#include "Net/Output.h"
#include "Orvane/OrvaneCore.h"
#include "Support/LibraryLines.h"

namespace OrvaneNet {
namespace {

const std::map<std::string, int (*)(const Arguments&)> kRun = {
    {"state", RunState}, {"ping", RunPing},    {"traceroute", RunTraceroute}, {"lookup", RunLookup},
    {"get", RunRequest}, {"post", RunRequest}, {"download", RunDownload},     {"diagnose", RunDiagnose},
};

int Main(int count, char** words) {
    Arguments arguments;
    std::string error;
    if (!ParseArguments(count, words, arguments, error)) {
        Say(error);
        return kWrongUse;
    }
    if (arguments.help) {
        fputs(kHelpText, stdout);
        return kDone;
    }
    if (arguments.version) {
        Print(std::string("orvane-net ") + orvanecore_get_version());
        return kDone;
    }
    return kRun.at(arguments.command)(arguments);
}

// The library speaks while it loads, which is before main: so its lines are hidden before it loads.
void BeforeTheLibraryLoads(int count, char** words, char**) {
    if (!OrvaneTools::HasWord(count, words, "--verbose")) HideLibraryLines();
}

ORVANE_BEFORE_LIBRARIES(BeforeTheLibraryLoads);

}  // namespace
}  // namespace OrvaneNet

int main(int count, char** words) {
    const int status = OrvaneNet::Main(count, words);
    if (fflush(stdout) == 0 && !ferror(stdout)) return status;
    OrvaneNet::Say("standard output cannot be written");
    return OrvaneNet::kWrongUse;
}
