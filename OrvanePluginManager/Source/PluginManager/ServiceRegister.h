// Collects the names of the services that one plugin declares in its OnStartup.
#ifndef ORVANE_PLUGIN_MANAGER_SERVICE_REGISTER_H
#define ORVANE_PLUGIN_MANAGER_SERVICE_REGISTER_H

#include <string>
#include <vector>

#include "Orvane/IServiceRegister.h"

namespace Orvane::Plugin {

class ServiceRegister final : public IServiceRegister {
public:
    bool Register(const char* serviceName) override;
    // In order of registration; duplicates stay.
    const std::vector<std::string>& GetServiceNames() const { return _serviceNames; }

private:
    std::vector<std::string> _serviceNames;
};

}  // namespace Orvane::Plugin

#endif
