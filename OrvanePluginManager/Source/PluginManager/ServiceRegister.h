// Collects the names of the services that one plugin declares in its OnStartup.
#ifndef ORVANE_PLUGIN_MANAGER_SERVICE_REGISTER_H
#define ORVANE_PLUGIN_MANAGER_SERVICE_REGISTER_H

#include <string>
#include <vector>

#include "Orvane/IServiceRegister.h"

namespace Orvane::Plugin {

// The host makes one for each plugin, hands it to that plugin's OnStartup, and copies the names into the registry when
// the call returns. A plugin may not keep it. Main thread.
class ServiceRegister final : public IServiceRegister {
public:
    // Copies the name. Returns false, with a line in the log, for null.
    bool Register(const char* serviceName) override;
    // In order of registration; duplicates stay.
    const std::vector<std::string>& GetServiceNames() const { return _serviceNames; }

private:
    std::vector<std::string> _serviceNames;
};

}  // namespace Orvane::Plugin

#endif
