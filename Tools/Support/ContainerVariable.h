// The variable ORVANE_HOME, which names the container of an application.
#ifndef ORVANE_TOOLS_SUPPORT_CONTAINER_VARIABLE_H
#define ORVANE_TOOLS_SUPPORT_CONTAINER_VARIABLE_H

#include <string>

namespace OrvaneTools {

// Its value, or empty if the library does without it: it is not set, or is a relative path. Of the latter the library
// says nothing, and looks elsewhere; so it is told in `problem`, which else stays as it is.
std::string ContainerOfEnvironment(std::string& problem);

}  // namespace OrvaneTools

#endif
