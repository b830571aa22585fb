// The plugin host as the run time's table offers it: the classes "PluginUtils", which drives the host, and
// "PluginUtilsWrapper", by which a library that does not link to the host finds it.
#ifndef ORVANE_PLUGIN_MANAGER_PLUGIN_UTILS_H
#define ORVANE_PLUGIN_MANAGER_PLUGIN_UTILS_H

#include "Orvane/IPluginManager.h"

// The native methods drive PluginManager's one instance, never the field: setting a native manager changes what
// getNativePluginManager gives and nothing else. Main thread.
class PluginUtils {
public:
    static PluginUtils* sharedInstance();
    // Enters both classes in the run time's table.
    static void RegisterRunTimeClasses();

    void setNativePluginManager(Orvane::Plugin::IPluginManager* manager) { _pluginManager = manager; }
    Orvane::Plugin::IPluginManager* getNativePluginManager() const { return _pluginManager; }

    void nativeStartup();
    void nativePostStartup();
    void nativePreShutdown();
    void nativeShutdown();

private:
    PluginUtils();

    Orvane::Plugin::IPluginManager* _pluginManager;
};

// Makes the shared PluginUtils, and with it the plugin host. One object of it is made while the library loads.
class PluginUtilsLaunch {
public:
    PluginUtilsLaunch() { PluginUtils::sharedInstance(); }
};

#endif
