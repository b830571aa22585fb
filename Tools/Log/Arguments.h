// The command line of orvane-log. The help text (Help.cpp) tells a user the same.
#ifndef ORVANE_TOOLS_LOG_ARGUMENTS_H
#define ORVANE_TOOLS_LOG_ARGUMENTS_H

#include <ctime>
#include <optional>
#include <string>
#include <vector>

#include "Log/Filter.h"

namespace OrvaneLog {

// What one run does. kPrint is the default. The options of the others exclude each other, but kHelp and kVersion take
// the place of any other, and kHelp that of kVersion.
enum class Action {
    kPrint,    // the text of the logs
    kRecords,  // a table of the records in place of their text
    kVerify,   // no text: only the findings and the exit status
    kFollow,   // the last entries, then whatever comes, until the process is ended
    kKeygen,   // makes a key pair and reads no log
    kHelp,
    kVersion
};
// kAuto means colours on a terminal, unless the environment's NO_COLOR or TERM ("dumb") speaks against it.
enum class ColourChoice { kAuto, kAlways, kNever };

// The run that a user asked for. It is filled once, before anything is read, and then only read: the parts of the
// reader borrow it.
struct Arguments {
    Action action = Action::kPrint;
    std::vector<std::string> paths;             // files, folders, or "-" for standard input, in the order given
    std::vector<std::string> keyFiles;          // of private keys; all of them are tried
    std::string keygenFile = "orvane-log.key";  // where kKeygen puts the private half
    FilterOptions filter;                       // which entries are shown
    std::optional<size_t> lines;                // only the last so many entries
    bool merge = false;                         // by time over all files
    bool json = false;                          // one object a line in place of text
    std::string otlpUrl;  // entries go to this receiver, and are not printed; empty: they are printed
    bool quiet = false;   // nothing on standard error but errors of use
    ColourChoice colour = ColourChoice::kAuto;
};

// Reads the arguments behind the program's name. False, and what is wrong in `error`, if they make no sense. Relative
// times count from `now`. Not for two threads at once.
bool ParseArguments(const std::vector<std::string>& words, time_t now, Arguments& arguments, std::string& error);

extern const char kHelpText[];

}  // namespace OrvaneLog

#endif
