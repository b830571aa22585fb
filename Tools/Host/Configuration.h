// What a game may do with the remote configuration.
#ifndef ORVANE_TOOLS_HOST_CONFIGURATION_H
#define ORVANE_TOOLS_HOST_CONFIGURATION_H

#include <string>

namespace OrvaneHost {

// Asks the configuration server now, as the module of that name. Does not wait: the answer reaches the observers on a
// thread of the library's. Before the launch there is no such service yet; that is told on the console. Main thread.
void Fetch(const std::string& moduleName);

}  // namespace OrvaneHost

#endif
