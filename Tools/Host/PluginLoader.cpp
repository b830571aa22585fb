#include "PluginLoader.h"

#include <dlfcn.h>

#include <algorithm>
#include <filesystem>
#include <vector>

#include "Orvane/PluginBase.h"
#include "Orvane/RunTime.h"

namespace OrvaneHost {
namespace {

using Orvane::Plugin::PluginCollection;

bool ListLibraries(const std::string& folder, std::vector<std::string>& paths) {
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        if (entry->path().extension() == ".so") paths.push_back(entry->path().string());
    }
    if (error) orvane_console_log("orvane-host: cannot read %s: %s", folder.c_str(), error.message().c_str());
    std::sort(paths.begin(), paths.end());
    return !error;
}

// Says which entries of the registry the library made or replaced. False if there are none.
bool TellRegistered(const std::string& path, const PluginCollection& before, const PluginCollection& after) {
    bool any = false;
    for (const auto& [name, descriptor] : after) {
        const auto known = before.find(name);
        if (known != before.end() && known->second.plugin == descriptor.plugin) continue;
        any = true;
        orvane_console_log("orvane-host: opened %s: plugin %s %s%s", path.c_str(), name.c_str(),
                           descriptor.pluginVersion.c_str(), known == before.end() ? "" : " (replaces another)");
    }
    return any;
}

}  // namespace

PluginFolder LoadPlugins(const std::string& folder) {
    std::vector<std::string> paths;
    if (!ListLibraries(folder, paths)) return PluginFolder::kUnreadable;

    PluginFolder taken = PluginFolder::kWhole;
    Orvane::Plugin::IPluginManager* manager = Orvane::Plugin::gs_GetOrvanePluginManager();
    for (const std::string& path : paths) {
        const PluginCollection before = manager ? *manager->GetPluginCollection() : PluginCollection();
        if (!dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
            orvane_console_log("orvane-host: cannot open %s: %s", path.c_str(), dlerror());
            taken = PluginFolder::kInPart;
            continue;
        }
        const PluginCollection after = manager ? *manager->GetPluginCollection() : PluginCollection();
        if (!TellRegistered(path, before, after)) {
            orvane_console_log("orvane-host: opened %s: it registered no plugin", path.c_str());
        }
    }
    return taken;
}

}  // namespace OrvaneHost
