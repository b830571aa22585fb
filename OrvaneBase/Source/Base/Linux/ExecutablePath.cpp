#include "Base/Linux/ExecutablePath.h"

#include <unistd.h>

#include <climits>

namespace Quern {

std::string ExecutablePath() {
    char path[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
    return {path, length > 0 ? static_cast<size_t>(length) : 0};
}

}  // namespace Quern
