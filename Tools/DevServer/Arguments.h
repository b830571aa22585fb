// The command line of orvane-devserver. The help text (Arguments.cpp) tells a user the same.
#ifndef ORVANE_TOOLS_DEVSERVER_ARGUMENTS_H
#define ORVANE_TOOLS_DEVSERVER_ARGUMENTS_H

#include <string>
#include <vector>

#include "DevServer/Fault.h"

namespace OrvaneDevServer {

// What one run does: kServe until a signal ends it; kLint looks at files and ends.
enum class Action { kServe, kLint, kHelp, kVersion };

// The run that a user asked for. Filled once, then only read.
struct Arguments {
    Action action = Action::kServe;
    std::string folder = "devserver";    // of kServe: all that the server serves and keeps
    std::string host = "127.0.0.1";      // a loopback address; no other is taken
    int port = 8765;                     // 0: any free one
    std::vector<Fault> faults;           // in force from the start
    std::vector<std::string> keyFiles;   // private keys for the logs that devices send
    std::vector<std::string> lintPaths;  // of kLint
    bool isStrict = false;               // of kLint: notes count as well
    bool isQuiet = false;                // nothing on standard error but what concerns the server itself
};

// Reads the arguments behind the program's name. False, and what is wrong in `error`, if they make no sense. Not for
// two threads at once.
bool ParseArguments(const std::vector<std::string>& words, Arguments& arguments, std::string& error);

extern const char kHelpText[];

}  // namespace OrvaneDevServer

#endif
