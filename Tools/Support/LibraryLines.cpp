#include "Support/LibraryLines.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstring>

namespace OrvaneTools {
namespace {

int g_shown = STDERR_FILENO;  // the true one, while lines are held

// Sends standard error into `file`, which it closes. As HideLibraryLines. System calls alone: this may run before any
// library's objects are made.
int Redirect(int file) {
    int shown = STDERR_FILENO;
    const int kept = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
    if (kept >= 0 && file >= 0 && dup2(file, STDERR_FILENO) >= 0) shown = kept;
    if (file >= 0) close(file);
    return shown;
}

}  // namespace

int HideLibraryLines() {
    return Redirect(open("/dev/null", O_WRONLY | O_CLOEXEC));
}

void HoldLibraryLines() {
    g_shown = Redirect(memfd_create("library-lines", MFD_CLOEXEC));
}

std::string TakeLibraryLines() {
    if (g_shown == STDERR_FILENO) return {};
    const int held = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
    dup2(g_shown, STDERR_FILENO);
    close(g_shown);
    g_shown = STDERR_FILENO;
    std::string lines;
    char piece[4096];
    for (ssize_t got; (got = pread(held, piece, sizeof piece, static_cast<off_t>(lines.size()))) > 0;)
        lines.append(piece, static_cast<size_t>(got));
    close(held);
    return lines;
}

bool HasWord(int count, char** words, const char* word) {
    for (int i = 1; i < count; ++i)
        if (strcmp(words[i], word) == 0) return true;
    return false;
}

}  // namespace OrvaneTools
