// Where the log files lie.
#ifndef ORVANE_STORAGE_LOG_LOG_FOLDER_H
#define ORVANE_STORAGE_LOG_LOG_FOLDER_H

namespace Quern {

// The folder in the cache folder that holds a folder for each module.
inline constexpr char kLogFolder[] = "OrvaneSDKLog";

}  // namespace Quern

#endif
