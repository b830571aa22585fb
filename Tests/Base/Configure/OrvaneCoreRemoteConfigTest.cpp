#include "Base/Configure/OrvaneCoreRemoteConfig.h"

#include "Support/CoreSettings.h"
#include "Support/FakePlugins.h"
#include "Support/Test.h"

namespace {

using Orvane::OrvaneCoreRemoteConfig;
using OrvaneTest::FakePlugin;

auto* CorePlugin() {
    return Orvane::Plugin::Singleton<Orvane::Plugin::OrvaneCoreInnerPlugin>::GetInstance();
}

std::string ReadAll(OrvaneCoreRemoteConfig* config) {
    return OrvaneTest::Format("%d %lld %g %d ", config->GetInt("x", 5), config->GetLong("x", 1LL << 40),
                              config->GetDouble("x", 0.5), config->GetBool("x", true)) +
           config->GetString("x", "default").c_str();
}

class BrokenLink : public testing::TestWithParam<const char*> {};
INSTANTIATE_TEST_SUITE_P(, BrokenLink,
                         testing::Values("pluginManager", "PLUGIN_NAME_ORVANECORE",
                                         "PLUGIN_SERVICE_NAME_REMOTECONFIG"));

TEST_P(BrokenLink, IsToldAtConstructionAloneAndEveryReadGivesItsDefault) {
    OrvaneTest::CapturedConsole console;
    const std::string missing = GetParam();
    if (missing != "pluginManager") CorePlugin()->GetCachePluginManager();
    std::optional<FakePlugin> core;
    if (missing == "PLUGIN_SERVICE_NAME_REMOTECONFIG") core.emplace("OrvaneCore");
    OrvaneCoreRemoteConfig* config = OrvaneCoreRemoteConfig::GetInstance();
    EXPECT_THAT(console.Take(), Contains("Error " + missing + " is NULL").Times(1));
    EXPECT_EQ(ReadAll(config), "5 1099511627776 0.5 1 default");
    EXPECT_EQ(config->GetString("x", nullptr), "");
    EXPECT_EQ(OrvaneCoreRemoteConfig::GetInstance(), config);
    EXPECT_THAT(console.Take(), IsEmpty());
}

class FakeRemoteConfig final : public OrvaneTest::CoreSettings {
public:
    IRemoteConfig* GetRemoteConfig(Orvane::Plugin::PluginBase* plugin) override {
        asked = plugin;
        inside = OrvaneCoreRemoteConfig::GetInstance()->GetInt("x", 5);  // as a log callback does by a stage line
        return this;
    }
    int GetInt(const char*, int value) override { return value + 1; }
    long long GetLong(const char*, long long value) override { return value + 1; }
    double GetDouble(const char*, double value) override { return value + 1; }
    bool GetBool(const char*, bool value) override { return !value; }
    // By the rule of the interface: what does not fit with its terminator fails.
    bool GetString(const char*, char* buffer, int& length, const char*) override {
        if (static_cast<int>(text.size()) >= length) return false;
        memcpy(buffer, text.c_str(), text.size() + 1);
        length = static_cast<int>(text.size());
        return true;
    }

    Orvane::Plugin::PluginBase* asked = nullptr;
    int inside = 0;
    std::string text;
};

TEST(OrvaneCoreRemoteConfig, ReadsThroughTheService) {
    CorePlugin()->GetCachePluginManager();
    FakePlugin core("OrvaneCore");
    FakeRemoteConfig service;
    core.services["REMOTECONFIG"] = &service;
    OrvaneCoreRemoteConfig* config = OrvaneCoreRemoteConfig::GetInstance();
    EXPECT_EQ(service.asked, CorePlugin());
    EXPECT_EQ(service.inside, 5);
    service.text = std::string(1023, 't');
    EXPECT_EQ(ReadAll(config), "6 1099511627777 1.5 0 " + service.text);
    service.text += "t";
    EXPECT_EQ(config->GetString("x", "default"), "default");
}

}  // namespace
