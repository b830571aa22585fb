// What a game may do with the remote configuration.
#ifndef ORVANE_TOOLS_HOST_CONFIGURATION_H
#define ORVANE_TOOLS_HOST_CONFIGURATION_H

#include <string>

namespace OrvaneHost {

// Asks the configuration server, as the module of that name; once the library has launched. Main thread.
void Fetch(const std::string& moduleName);

}  // namespace OrvaneHost

#endif
