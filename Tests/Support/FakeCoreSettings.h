// Settings of the core library that a test chooses: what OrvaneCoreRemoteConfig reads.
#ifndef ORVANE_TESTS_SUPPORT_FAKE_CORE_SETTINGS_H
#define ORVANE_TESTS_SUPPORT_FAKE_CORE_SETTINGS_H

#include <map>
#include <string>
#include <vector>

#include "Orvane/IRemoteConfig.h"
#include "PluginManager/InnerPlugin/OrvaneCoreInnerPlugin.h"
#include "Support/FakePlugins.h"

namespace OrvaneTest {

// A core plugin with the service "REMOTECONFIG", installed while the object lives. Made before the first read of a
// setting, since the reader looks for the service once.
class FakeCoreSettings : public Orvane::IRemoteConfig, public Orvane::Plugin::IRemoteConfigService {
public:
    FakeCoreSettings() : _core("OrvaneCore") {
        Orvane::Plugin::Singleton<Orvane::Plugin::OrvaneCoreInnerPlugin>::GetInstance()->GetCachePluginManager();
        _core.services["REMOTECONFIG"] = this;
    }

    const char* GetName() const override { return "REMOTECONFIG"; }
    const char* GetPluginName() const override { return "OrvaneCore"; }
    Orvane::IRemoteConfig* GetRemoteConfig(Orvane::Plugin::PluginBase*) override { return this; }

    int GetInt(const char* key, int defaultValue) override { return static_cast<int>(GetLong(key, defaultValue)); }
    long long GetLong(const char* key, long long defaultValue) override {
        reads.push_back(std::string(key) + "=" + std::to_string(defaultValue));
        const auto found = values.find(key);
        return found == values.end() ? defaultValue : found->second;
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

    std::map<std::string, long long> values;
    std::vector<std::string> reads;  // "key=default" of each read

private:
    FakePlugin _core;
};

}  // namespace OrvaneTest

#endif
