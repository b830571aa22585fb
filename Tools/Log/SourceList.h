// Which files a reading takes, in which order. Only names are looked at; no file is read.
#ifndef ORVANE_TOOLS_LOG_SOURCE_LIST_H
#define ORVANE_TOOLS_LOG_SOURCE_LIST_H

#include <cstdint>
#include <string>
#include <vector>

namespace OrvaneLog {

struct SourceList {
    std::vector<std::string> files;  // in the order in which they are read; a file named twice is there twice
    // One message each for what was named but could not be looked into, or holds no log.
    std::vector<std::string> problems;
};

// Makes the list for the paths of a command line. A file stands as named, "-" for standard input. A folder stands for
// all its log files, at any depth, by module and hour, with the mapped blocks after them. The loggers keep the blocks
// outside, above the folder of all modules; to that folder, and to the folder of a module, belong its blocks all the
// same. Where a block is gone, its journal stands for it. `modules`, if not empty, leaves out what a folder holds of
// other modules.
SourceList ListSources(const std::vector<std::string>& paths, const std::vector<std::string>& modules);

// Whether the file of that name may hold lines of one of these modules; any file may if the list is empty. A name that
// tells no module may hold lines of any.
bool MayHoldModule(const std::string& path, const std::vector<std::string>& modules);

}  // namespace OrvaneLog

#endif
