#include "Support/LibraryLines.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstring>

namespace OrvaneTools {

// System calls alone: this may run before any library's objects are made.
int HideLibraryLines() {
    int shown = STDERR_FILENO;
    const int kept = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (kept >= 0 && nowhere >= 0 && dup2(nowhere, STDERR_FILENO) >= 0) shown = kept;
    if (nowhere >= 0) close(nowhere);
    return shown;
}

bool HasWord(int count, char** words, const char* word) {
    for (int i = 1; i < count; ++i)
        if (strcmp(words[i], word) == 0) return true;
    return false;
}

}  // namespace OrvaneTools
