// The library's well-known directories, and paths as texts.
#ifndef ORVANE_STORAGE_FILE_C_PATH_H
#define ORVANE_STORAGE_FILE_C_PATH_H

#include "Base/Container/AArray.h"
#include "Base/Container/AString.h"

namespace Quern {

// The three directories are asked for once and then stand for the life of the process; null only if memory ran out.
class CPath {
public:
    // The application's container.
    static const char* GetAppPath();
    static const char* GetDocPath();
    // The root of all the library's files.
    static const char* GetCachePath();
    // The file below it that is named after the project, with the project's name as it was at the first call.
    static const char* GetDefaultConfigFile();

    // Makes a directory and those above it. False if the path exists already, so callers test for that first.
    static bool CreatePath(const char* path);
    // Removes a file, or a directory with all that is in it; a link itself and not what it points to. False if it is
    // not there or could not be removed whole.
    static bool RemovePath(const char* path);

    // Joins the two with "/", unless `base` is empty or ends in a separator. A null argument leaves `out` as it is.
    static void GetSubPath(AString& out, const char* base, const char* sub);
    // The same onto the path itself, which it gives back.
    static AString& AppendSubPath(AString& path, const char* sub);
    // What follows the last "\", or if there is none the last "/", or else all of it.
    static void GetFileName(const char* path, AString& out);

    // Adds the names, not paths, of the regular files and the directories in a directory, in no order. Links and
    // devices are left out. False, with a log line, for a null argument or a directory that cannot be read.
    static bool GetFiles(const char* path, AArray* files);
};

}  // namespace Quern

#endif
