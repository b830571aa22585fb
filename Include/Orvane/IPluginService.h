/// \file IPluginService.h
/// The root of every service interface that a plugin offers. Slot order is a binary contract.
#ifndef ORVANE_I_PLUGIN_SERVICE_H
#define ORVANE_I_PLUGIN_SERVICE_H

namespace Orvane {
namespace Plugin {

/// Implemented by the plugin that offers the service, which also owns the object.
class IPluginService {
public:
    virtual ~IPluginService() {}
    /// The service's name, by which a plugin's GetServiceByName finds it. Valid as long as the object.
    virtual const char* GetName() const = 0;
    /// The name of the plugin that offers it. Valid as long as the object.
    virtual const char* GetPluginName() const = 0;
};

}  // namespace Plugin
}  // namespace Orvane

#endif
