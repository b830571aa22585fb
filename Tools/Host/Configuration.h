// What a game may do with the remote configuration.
#ifndef ORVANE_TOOLS_HOST_CONFIGURATION_H
#define ORVANE_TOOLS_HOST_CONFIGURATION_H

#include <string>

namespace OrvaneHost {

// Asks the configuration server, as the module of that name. False before the library has launched. Main thread.
bool Fetch(const std::string& moduleName);

}  // namespace OrvaneHost

#endif
