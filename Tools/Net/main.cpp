// orvane-net: how the library sees the network. See Arguments.cpp for its manual.
#include <dlfcn.h>

#include <cstdio>
#include <map>

#include "Net/Arguments.h"
#include "Net/Commands.h"
#include "Net/Output.h"

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
        Print("orvane-net " ORVANE_VERSION);
        return kDone;
    }
    if (!arguments.verbose) HideLibraryLines();
    if (!dlopen(CORE_LIBRARY, RTLD_NOW | RTLD_LOCAL)) {
        Say(dlerror());
        return kWrongUse;
    }
    return kRun.at(arguments.command)(arguments);
}

}  // namespace
}  // namespace OrvaneNet

int main(int count, char** words) {
    const int status = OrvaneNet::Main(count, words);
    if (fflush(stdout) == 0 && !ferror(stdout)) return status;
    OrvaneNet::Say("standard output cannot be written");
    return OrvaneNet::kWrongUse;
}
