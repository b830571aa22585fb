// The second walk of the host, apart from the rest of it: it reports, and reports come from a plugin.
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
