// Which files a reading takes, in which order.
#ifndef ORVANE_TOOLS_LOG_SOURCE_LIST_H
#define ORVANE_TOOLS_LOG_SOURCE_LIST_H

#include <cstdint>
#include <string>
#include <vector>

namespace OrvaneLog {

struct SourceList {
    std::vector<std::string> files;
    // One message each for what was named but could not be looked into, or holds no log.
    std::vector<std::string> problems;
};

// Files as named, "-" for standard input; of a folder all its log files, at any depth, by module and hour, the mapped
// blocks after them. To a module's folder, and to the folder of all modules, belong the blocks that the loggers keep
// outside, in the folder above; where a block is gone, its journal stands for it. `modules`, if not empty, leaves out
// what a folder holds of other modules.
SourceList ListSources(const std::vector<std::string>& paths, const std::vector<std::string>& modules);

// Whether the file of that name may hold lines of one of these modules; of none, all.
bool MayHoldModule(const std::string& path, const std::vector<std::string>& modules);

}  // namespace OrvaneLog

#endif
