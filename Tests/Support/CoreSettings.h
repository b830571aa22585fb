// Settings of the core library with an answer of a test's own.
#ifndef ORVANE_TESTS_SUPPORT_CORE_SETTINGS_H
#define ORVANE_TESTS_SUPPORT_CORE_SETTINGS_H

#include "Orvane/IRemoteConfig.h"

namespace OrvaneTest {

// The service "REMOTECONFIG" and what it gives, in one object. Only whole numbers have a value.
class CoreSettings : public Orvane::IRemoteConfig, public Orvane::Plugin::IRemoteConfigService {
public:
    const char* GetName() const override { return "REMOTECONFIG"; }
    const char* GetPluginName() const override { return "OrvaneCore"; }
    Orvane::IRemoteConfig* GetRemoteConfig(Orvane::Plugin::PluginBase*) override { return this; }

    // GetLong is what a test gives.
    int GetInt(const char* key, int defaultValue) override { return static_cast<int>(GetLong(key, defaultValue)); }
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

}  // namespace OrvaneTest

#endif
