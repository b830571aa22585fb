// A library that answers the core library's settings from the environment: each key is a variable's name.
//
// It takes the place of the core plugin while the application launches, before anything reads a setting, gives the
// service "REMOTECONFIG" and leaves all else to the core plugin.
#include <cstdlib>
#include <cstring>

#include "Orvane/AppLifecycle.h"
#include "Support/CoreSettings.h"

namespace {

class Settings : public OrvaneTest::CoreSettings {
public:
    long long GetLong(const char* key, long long defaultValue) override {
        const char* const value = getenv(key);
        return value ? atoll(value) : defaultValue;
    }
};

class Stand : public Orvane::Plugin::PluginBase {
public:
    void TakePlace() {
        GetCachePluginManager();
        Orvane::Plugin::IPlugin* const current = GetPluginManager()->GetPluginByName("OrvaneCore");
        if (current != this) _core = current;
        RegisterPlugin(this);
    }
    const char* GetName() const override { return "OrvaneCore"; }
    const char* GetVersion() const override { return _core->GetVersion(); }
    void OnStartup(Orvane::Plugin::IServiceRegister* services) override { _core->OnStartup(services); }
    void OnPostStartup() override { _core->OnPostStartup(); }
    void OnPreShutdown() override { _core->OnPreShutdown(); }
    void OnShutdown() override { _core->OnShutdown(); }
    Orvane::Plugin::IPluginService* GetServiceByName(const char* name) override {
        return name && strcmp(name, "REMOTECONFIG") == 0 ? &_settings : _core->GetServiceByName(name);
    }

private:
    Orvane::Plugin::IPlugin* _core = nullptr;
    Settings _settings;
};

void* OnLaunch(orvane_object*, const char*, void* const*) {
    static Stand* const stand = new Stand;
    stand->TakePlace();
    return nullptr;
}

__attribute__((constructor)) void ObserveLifecycle() {
    orvane_class* const cls = orvane_class_allocate("SettingsLifecycle");
    orvane_class_add_protocol(cls, ORVANE_APP_LIFECYCLE_OBSERVER);
    orvane_class_add_method(cls, "application:didFinishLaunchingWithOptions:", OnLaunch);
    static orvane_object observer = {cls, nullptr};
    gs_OrvaneAppLifecycleAddObserver(&observer);
}

}  // namespace
