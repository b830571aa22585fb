// Reading and making a file in one piece.
#ifndef ORVANE_STORAGE_FILE_WHOLE_FILE_H
#define ORVANE_STORAGE_FILE_WHOLE_FILE_H

#include <sys/types.h>

#include <cstdio>
#include <string>
#include <string_view>

namespace Quern {

// What is left of the file, up to its end or the first error; `error`, where given, says whether there was one.
std::string ReadToEnd(FILE* file, bool* error = nullptr);

// False, with errno set, if not all of it could be written.
bool WriteAll(int descriptor, std::string_view content);

// Writes a file aside, synced, and gives it the name `path`: the file is there whole, or not at all. What bears the
// name already stays: false, with EEXIST. False, with errno set, if anything else failed. The name is on the disk when
// it returns.
bool CreateFile(const std::string& path, std::string_view content, mode_t mode);

}  // namespace Quern

#endif
