// Reading and replacing a file in one piece.
#ifndef ORVANE_STORAGE_FILE_WHOLE_FILE_H
#define ORVANE_STORAGE_FILE_WHOLE_FILE_H

#include <sys/types.h>

#include <cstdio>
#include <string>
#include <string_view>

namespace Quern {

// What is left of the file, up to its end or the first error; `error`, where given, says whether there was one.
std::string ReadToEnd(FILE* file, bool* error = nullptr);

// Truncates the file and writes it anew in one step: what is killed between leaves an empty file, or seldom a part.
// False if it could not be opened or written whole.
bool OverwriteFile(const char* path, std::string_view content);

// Writes a file aside, synced, and gives it the name `path`: at any moment the name bears the old content or the new
// one. False, with errno set and the old file in place, if that failed.
bool ReplaceFile(const std::string& path, std::string_view content, mode_t mode);
// The same, but what bears the name already stays: false, with EEXIST.
bool CreateFile(const std::string& path, std::string_view content, mode_t mode);

}  // namespace Quern

#endif
