// Reading and making a file in one piece.
#ifndef ORVANE_STORAGE_FILE_WHOLE_FILE_H
#define ORVANE_STORAGE_FILE_WHOLE_FILE_H

#include <sys/types.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

namespace Quern {

// What is left of the file, up to its end or the first error; `error`, where given, says whether there was one. More
// than `most` bytes is one too, however fast the file grows: no more is read than tells so.
std::string ReadToEnd(FILE* file, bool* error = nullptr, size_t most = SIZE_MAX);

// False, with errno set, if not all of it could be written.
bool WriteAll(int descriptor, std::string_view content);

// Writes a file aside, synced, and gives it the name `path`: the file is there whole, or not at all. What bears the
// name already stays: false, with EEXIST. False, with errno set, if anything else failed. The name is on the disk when
// it returns.
bool CreateFile(const std::string& path, std::string_view content, mode_t mode);

}  // namespace Quern

#endif
