#include "Base/Linux/ExecutablePath.h"

#include <unistd.h>

#include <climits>

namespace Quern {

std::string ExecutablePath() {
    char path[PATH_MAX];
    // Not terminated: the length is all that tells where the path ends.
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
    return {path, length > 0 ? static_cast<size_t>(length) : 0};
}

}  // namespace Quern
