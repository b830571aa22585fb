// The command line.
#ifndef ORVANE_TOOLS_DEVSERVER_ARGUMENTS_H
#define ORVANE_TOOLS_DEVSERVER_ARGUMENTS_H

#include <string>
#include <vector>

#include "DevServer/Fault.h"

namespace OrvaneDevServer {

enum class Action { kServe, kLint, kHelp, kVersion };

struct Arguments {
    Action action = Action::kServe;
    std::string folder = "devserver";
    std::string host = "127.0.0.1";
    int port = 8765;  // 0: any free one
    std::vector<Fault> faults;
    std::vector<std::string> keyFiles;   // private keys for the logs that devices send
    std::vector<std::string> lintPaths;  // of kLint
    bool isStrict = false;               // of kLint: notes count as well
    bool isQuiet = false;
};

// Reads the arguments behind the program's name. False, and what is wrong in `error`, if they make no sense. Not for
// two threads at once.
bool ParseArguments(const std::vector<std::string>& words, Arguments& arguments, std::string& error);

extern const char kHelpText[];

}  // namespace OrvaneDevServer

#endif
