// A library that answers the core library's settings from the environment: each key is a variable's name.
//
// It takes the place of the core plugin while the application launches, before anything reads a setting, gives the
// service "REMOTECONFIG" and leaves all else to the core plugin.
#include <cstdlib>
#include <cstring>

#include "Orvane/AppLifecycle.h"
#include "Orvane/IRemoteConfig.h"

namespace {

class Settings : public Orvane::IRemoteConfig, public Orvane::Plugin::IRemoteConfigService {
public:
    const char* GetName() const override { return "REMOTECONFIG"; }
    const char* GetPluginName() const override { return "OrvaneCore"; }
    Orvane::IRemoteConfig* GetRemoteConfig(Orvane::Plugin::PluginBase*) override { return this; }

    int GetInt(const char* key, int defaultValue) override { return static_cast<int>(GetLong(key, defaultValue)); }
    long long GetLong(const char* key, long long defaultValue) override {
        const char* const value = getenv(key);
        return value ? atoll(value) : defaultValue;
    }
    double GetDouble(const char*, double defaultValue) override { return defaultValue; }
    bool GetBool(const char* key, bool defaultValue) override { return GetLong(key, defaultValue) != 0; }
    bool GetString(const char*, char*, int&, const char*) override { return false; }
    void AddObserver(Orvane::RemoteConfigObserver*) override {}
    void RemoveObserver(Orvane::RemoteConfigObserver*) override {}
    void SetUserInfo(int, const char*) override {}
    void Fetch() override {}
    void SetOption(const char*, int) override {}
    void SetOption(const char*, const char*) override {}
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
