#include "Support/ContainerVariable.h"

#include <cstdlib>

namespace OrvaneTools {

std::string ContainerOfEnvironment(std::string& problem) {
    constexpr char kVariable[] = "ORVANE_HOME";
    const char* const value = getenv(kVariable);
    const std::string home = value ? value : "";
    if (home.empty() || home.starts_with('/')) return home;
    problem = std::string(kVariable) + " is \"" + home + "\": no absolute path, so the library ignores it";
    return {};
}

}  // namespace OrvaneTools
