// The second walk of the host. It stands apart from the rest, because it reports an event, and events are made by a
// plugin's service.
#include "Base/ReportHandler/ReportHandler.h"
#include "PluginManager/PluginManager.h"

namespace Orvane::Plugin {

void PluginManager::PostStartup() {
    BuildAllPluginNames();
    // An event with the version of every plugin; inert without a data plugin.
    Quern::ReportHandler versions("OrvaneSDK_Versions", 3, 2000);
    Walk([&versions](const _tagPluginDescriptor& descriptor) {
        descriptor.plugin->OnPostStartup();
        versions.Add(descriptor.pluginName.c_str(), descriptor.pluginVersion.c_str());
    });
    versions.Report();
}

}  // namespace Orvane::Plugin
