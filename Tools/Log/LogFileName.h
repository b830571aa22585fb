// Tells what the name of a log file says. A logger names its files "<module>_<yyyymmddhh>.xlog", or ".log" for plain
// text, by local time; a block and its journal bear the module's name alone.
#ifndef ORVANE_TOOLS_LOG_LOG_FILE_NAME_H
#define ORVANE_TOOLS_LOG_LOG_FILE_NAME_H

#include <string>
#include <string_view>

#include "Storage/Log/LogFolder.h"

namespace OrvaneLog {

inline constexpr std::string_view kBlockExtension = ".mmap3";
// The companion of a block, which keeps it whole across a kill.
inline constexpr std::string_view kJournalExtension = ".journal3";
using Quern::kLogFolder;
// Stands in a file name for a module name that is too long for one.
inline constexpr std::string_view kLongModule = "Quern";

struct LogFileName {
    std::string module;    // the whole stem, if the name is not of the logger's form
    std::string hour;      // "2026112421"; empty likewise, and of a mapped block
    bool isBlock = false;  // or the journal of one
};

// Whether a file in a folder is one of a logger's, by its extension: ".xlog", ".log" or that of a block. A journal
// belongs to its block, and is none.
bool IsLogFile(std::string_view path);
bool IsJournal(std::string_view path);
// Takes the name apart; the folders in front do not matter. Never fails: a foreign name is a module without an hour.
LogFileName ParseLogFileName(std::string_view path);

// The last component of a path.
std::string_view BaseName(std::string_view path);

}  // namespace OrvaneLog

#endif
