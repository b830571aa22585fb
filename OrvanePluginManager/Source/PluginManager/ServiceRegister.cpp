#include "PluginManager/ServiceRegister.h"

#include "Base/XLog.h"

namespace Orvane::Plugin {

bool ServiceRegister::Register(const char* serviceName) {
    if (!serviceName) {
        ORVANE_LOG_ERROR("ServiceRegister::Register serviceName is null");
        return false;
    }
    ORVANE_LOG_INFO("ServiceRegister::Register serviceName:%s", serviceName);
    _serviceNames.emplace_back(serviceName);
    return true;
}

}  // namespace Orvane::Plugin
