// Where the running program lies.
#ifndef ORVANE_BASE_LINUX_EXECUTABLE_PATH_H
#define ORVANE_BASE_LINUX_EXECUTABLE_PATH_H

#include <string>

namespace Quern {

// Absolute, with its links resolved; empty if the system does not tell.
std::string ExecutablePath();

}  // namespace Quern

#endif
