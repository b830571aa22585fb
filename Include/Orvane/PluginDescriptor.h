/// \file PluginDescriptor.h
/// What the host knows of an installed plugin.
#ifndef ORVANE_PLUGIN_DESCRIPTOR_H
#define ORVANE_PLUGIN_DESCRIPTOR_H

#include <map>
#include <string>
#include <vector>

#include "Orvane/IPlugin.h"

namespace Orvane {
namespace Plugin {

/// A plain value; copied whole when a reader copies the collection.
struct _tagPluginDescriptor {
    IPlugin* plugin = nullptr;              ///< not owned
    std::string pluginName;                 ///< what GetName gave at installation
    std::string pluginVersion;              ///< what GetVersion gave at installation
    std::vector<std::string> serviceNames;  ///< in order of registration; empty until Startup has run
};

/// The registry: plugin name to descriptor, in byte order of names.
typedef std::map<std::string, _tagPluginDescriptor> PluginCollection;

}  // namespace Plugin
}  // namespace Orvane

#endif
