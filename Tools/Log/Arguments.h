// The command line.
#ifndef ORVANE_TOOLS_LOG_ARGUMENTS_H
#define ORVANE_TOOLS_LOG_ARGUMENTS_H

#include <ctime>
#include <optional>
#include <string>
#include <vector>

#include "Log/Filter.h"

namespace OrvaneLog {

enum class Action { kPrint, kRecords, kVerify, kFollow, kKeygen, kHelp, kVersion };
enum class ColourChoice { kAuto, kAlways, kNever };

struct Arguments {
    Action action = Action::kPrint;
    std::vector<std::string> paths;
    std::vector<std::string> keyFiles;
    std::string keygenFile = "orvane-log.key";
    FilterOptions filter;
    std::optional<size_t> lines;  // only the last so many entries
    bool merge = false;           // by time over all files
    bool json = false;
    std::string otlpUrl;  // entries go to this receiver, and are not printed; empty: they are printed
    bool quiet = false;
    ColourChoice colour = ColourChoice::kAuto;
};

// Reads the arguments behind the program's name. False, and what is wrong in `error`, if they make no sense. Relative
// times count from `now`. Not for two threads at once.
bool ParseArguments(const std::vector<std::string>& words, time_t now, Arguments& arguments, std::string& error);

extern const char kHelpText[];

}  // namespace OrvaneLog

#endif
