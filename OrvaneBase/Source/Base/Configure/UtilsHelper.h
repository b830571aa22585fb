// Small helpers of the upload.
#ifndef ORVANE_BASE_CONFIGURE_UTILS_HELPER_H
#define ORVANE_BASE_CONFIGURE_UTILS_HELPER_H

#include <string>
#include <vector>

namespace Quern {

// The pieces between delimiters. The last one is always there: an empty text gives one empty piece.
std::vector<std::string> SplitString(const std::string& text, char delimiter);

// The names of the regular files and sub-directories in a directory, ascending by byte. None, with a log line, if it
// cannot be read.
std::vector<std::string> GetFilesInDir(const std::string& dir);

// What follows the last "/", or all of it.
std::string GetFileNameByFilePath(const std::string& path);

}  // namespace Quern

#endif
