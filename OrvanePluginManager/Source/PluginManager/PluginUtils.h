// The plugin host as the run time's table offers it: the classes "PluginUtils", which drives the host, and
// "PluginUtilsWrapper", by which a library that does not link to the host finds it.
#ifndef ORVANE_PLUGIN_MANAGER_PLUGIN_UTILS_H
#define ORVANE_PLUGIN_MANAGER_PLUGIN_UTILS_H

#include "Orvane/IPluginManager.h"

// The native methods drive PluginManager's one instance, never the field: setting a native manager changes what
// getNativePluginManager gives and nothing else. Main thread.
class PluginUtils {
public:
    // Made at the first call, and never destroyed: siblings keep the pointer.
    static PluginUtils* sharedInstance();

    // Any pointer, null too: what is set is what siblings get from the getter. Not owned.
    void setNativePluginManager(Orvane::Plugin::IPluginManager* manager) { _pluginManager = manager; }
    Orvane::Plugin::IPluginManager* getNativePluginManager() const { return _pluginManager; }

    // The four steps of the plugins' life, in this order, each for all plugins. The library takes the first two at the
    // launch. The others are the host's: without its call no plugin hears that the process ends.
    void nativeStartup();
    void nativePostStartup();
    void nativePreShutdown();
    void nativeShutdown();

private:
    PluginUtils();

    Orvane::Plugin::IPluginManager* _pluginManager;  // PluginManager's instance until another one is set
};

// Makes the shared PluginUtils, and with it the plugin host. One object of it is made while the library loads.
class PluginUtilsLaunch {
public:
    PluginUtilsLaunch() { PluginUtils::sharedInstance(); }
};

#endif
