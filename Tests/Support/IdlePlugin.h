// A sibling plugin that does nothing.
#ifndef ORVANE_TESTS_SUPPORT_IDLE_PLUGIN_H
#define ORVANE_TESTS_SUPPORT_IDLE_PLUGIN_H

#include "Orvane/PluginBase.h"

namespace OrvaneTest {

// Its texts may be null, and are read anew at each question.
struct IdlePlugin : Orvane::Plugin::PluginBase {
    IdlePlugin(const char* ofName, const char* ofVersion) : name(ofName), version(ofVersion) {}
    const char* GetName() const override { return name; }
    const char* GetVersion() const override { return version; }
    void OnStartup(Orvane::Plugin::IServiceRegister*) override {}
    void OnPostStartup() override {}
    void OnPreShutdown() override {}
    void OnShutdown() override {}
    Orvane::Plugin::IPluginService* GetServiceByName(const char*) override { return nullptr; }

    // As the library of a sibling does it while it loads; the plugin lives as long as the process.
    void Register() {
        GetCachePluginManager();
        RegisterPlugin(this);
    }

    const char* name;
    const char* version;
};

}  // namespace OrvaneTest

#endif
