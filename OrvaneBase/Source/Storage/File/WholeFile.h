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

// A new content for a file, put in place in two steps: a process that is killed before the second leaves the old one.
// It is written to `path`.new, which takes the name; writers of one path wait for each other. What cannot be replaced
// so (someone else's file, a folder without the right) is truncated and written in place. The mode and a link stay. Not
// synced: a machine that loses its power may leave either.
class FileReplacement {
public:
    // `content` must outlive the object.
    FileReplacement(const char* path, std::string_view content);
    // Drops what was not put in place.
    ~FileReplacement();
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    // Once. False if the file could not be written whole.
    bool PutInPlace();

private:
    void Prepare();

    std::string _path;
    std::string_view _content;
    std::string _next;
    int _descriptor = -1;   // of the next file, locked; -1 to write in place
    bool _isWhole = false;  // the next file is ready
};

// Writes a file aside, synced, and gives it the name `path`: at any moment the name bears the old content or the new
// one. False, with errno set and the old file in place, if that failed.
bool ReplaceFile(const std::string& path, std::string_view content, mode_t mode);
// The same, but what bears the name already stays: false, with EEXIST. The name is on the disk when it returns.
bool CreateFile(const std::string& path, std::string_view content, mode_t mode);

}  // namespace Quern

#endif
