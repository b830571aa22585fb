// Settings of the core library that a test chooses: what OrvaneCoreRemoteConfig reads.
#ifndef ORVANE_TESTS_SUPPORT_FAKE_CORE_SETTINGS_H
#define ORVANE_TESTS_SUPPORT_FAKE_CORE_SETTINGS_H

#include <map>
#include <string>
#include <vector>

#include "PluginManager/InnerPlugin/OrvaneCoreInnerPlugin.h"
#include "Support/CoreSettings.h"
#include "Support/FakePlugins.h"

namespace OrvaneTest {

// A core plugin with the service "REMOTECONFIG", installed while the object lives. Made before the first read of a
// setting, since the reader looks for the service once.
class FakeCoreSettings : public CoreSettings {
public:
    FakeCoreSettings() : _core("OrvaneCore") {
        Orvane::Plugin::Singleton<Orvane::Plugin::OrvaneCoreInnerPlugin>::GetInstance()->GetCachePluginManager();
        _core.services["REMOTECONFIG"] = this;
    }

    long long GetLong(const char* key, long long defaultValue) override {
        reads.push_back(std::string(key) + "=" + std::to_string(defaultValue));
        const auto found = values.find(key);
        return found == values.end() ? defaultValue : found->second;
    }

    std::map<std::string, long long> values;
    std::vector<std::string> reads;  // "key=default" of each read

private:
    FakePlugin _core;
};

}  // namespace OrvaneTest

#endif
