/// \file PluginBase.h
/// The base class of a plugin, and the way from a library that does not link to the host to the one manager of the
/// process. Header-only: a plugin links liborvaneruntime.so and nothing else.
#ifndef ORVANE_PLUGIN_BASE_H
#define ORVANE_PLUGIN_BASE_H

#include <atomic>

#include "Orvane/IPlugin.h"
#include "Orvane/IPluginManager.h"
#include "Orvane/RunTime.h"

namespace Orvane {
namespace Plugin {

/// Finds the process's plugin manager through the run-time class "PluginUtilsWrapper", and says on the console what it
/// has found. Any thread.
/// \return null in a process where no host is loaded. Owned by the host, and valid as long as the process lives.
inline IPluginManager* gs_GetOrvanePluginManager() {
    IPluginManager* manager = nullptr;
    orvane_object* wrapper = orvane_object_create(orvane_class_lookup("PluginUtilsWrapper"));
    if (orvane_object_responds(wrapper, "getNativePluginManager")) {
        manager = static_cast<IPluginManager*>(orvane_object_perform(wrapper, "getNativePluginManager", nullptr));
    }
    orvane_object_release(wrapper);
    orvane_console_log("gs_GetOrvanePluginManager pluginManager:%p", static_cast<void*>(manager));
    return manager;
}

/// A plugin derives from this, calls GetCachePluginManager and then RegisterPlugin, as a rule from an initialiser that
/// runs while its library loads. That has to happen before the application's launch: a plugin that registers later is
/// found by name, but the walks that are over do not visit it.
///
/// The host keeps the bare pointer and never deletes it. So a plugin is made with `new` and left, and its library is
/// linked with -z nodelete; one that has to go calls IPluginManager::Uninstall first.
class PluginBase : public IPlugin {
public:
    /// Looks the manager up unless it is cached already. Any thread: all find the same one. Without a host nothing is
    /// cached, and the next call looks again.
    void GetCachePluginManager() {
        if (!GetPluginManager()) _pluginManager.store(gs_GetOrvanePluginManager(), std::memory_order_release);
    }

    /// \return the cached manager; null before a successful GetCachePluginManager. Never looks anything up.
    ///         Any thread.
    IPluginManager* GetPluginManager() const { return _pluginManager.load(std::memory_order_acquire); }

    /// Installs a plugin (as a rule `this`) in the cached manager. Calls its GetName and GetVersion and no more; the
    /// stages come with the launch. Any thread. A null is told on the console. Without a cached manager it does
    /// nothing, silently, so that a plugin does no harm in a process that has no host.
    /// \param plugin stays the caller's, and must outlive its time in the registry
    void RegisterPlugin(IPlugin* plugin) {
        if (!plugin) {
            orvane_console_log("PluginBase::RegisterPlugin plugin is null");
            return;
        }
        IPluginManager* manager = GetPluginManager();
        if (!manager) return;
        manager->Install(plugin);
        orvane_console_log("PluginBase::RegisterPlugin PluginManager:%p , IPlugin:%p", static_cast<void*>(manager),
                           static_cast<void*>(plugin));
    }

private:
    std::atomic<IPluginManager*> _pluginManager{nullptr};  // laid out as a plain pointer
};

}  // namespace Plugin
}  // namespace Orvane

#endif
