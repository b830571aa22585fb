#include "Base/Configure/OrvaneCoreRemoteConfig.h"

#include "PluginManager/InnerPlugin/OrvaneCoreInnerPlugin.h"
#include "Support/CoreSettings.h"
#include "Support/FakePlugins.h"
#include "Support/Test.h"

namespace {

using Orvane::OrvaneCoreRemoteConfig;
using OrvaneTest::FakePlugin;

// Every read gives the default, and the broken link is told at construction alone.
void ExpectDefaults(OrvaneTest::CapturedConsole& console, const char* line) {
    OrvaneCoreRemoteConfig* config = OrvaneCoreRemoteConfig::GetInstance();
    EXPECT_THAT(console.Take(), Contains(line).Times(1));
    EXPECT_EQ(config->GetInt("x", 5), 5);
    EXPECT_EQ(config->GetLong("x", 1LL << 40), 1LL << 40);
    EXPECT_EQ(config->GetDouble("x", 0.5), 0.5);
    EXPECT_TRUE(config->GetBool("x", true));
    EXPECT_EQ(config->GetString("x", "default"), "default");
    EXPECT_EQ(config->GetString("x", nullptr), "");
    EXPECT_EQ(OrvaneCoreRemoteConfig::GetInstance(), config);
    EXPECT_THAT(console.Take(), IsEmpty());
}

auto* CorePlugin() {
    return Orvane::Plugin::Singleton<Orvane::Plugin::OrvaneCoreInnerPlugin>::GetInstance();
}

TEST(OrvaneCoreRemoteConfig, WithoutACachedManager) {
    OrvaneTest::CapturedConsole console;
    ExpectDefaults(console, "Error pluginManager is NULL");
}

TEST(OrvaneCoreRemoteConfig, WithoutTheCorePlugin) {
    OrvaneTest::CapturedConsole console;
    CorePlugin()->GetCachePluginManager();
    ExpectDefaults(console, "Error PLUGIN_NAME_ORVANECORE is NULL");
}

TEST(OrvaneCoreRemoteConfig, WithoutTheService) {
    OrvaneTest::CapturedConsole console;
    CorePlugin()->GetCachePluginManager();
    FakePlugin core("OrvaneCore");
    ExpectDefaults(console, "Error PLUGIN_SERVICE_NAME_REMOTECONFIG is NULL");
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
    EXPECT_EQ(config->GetInt("x", 5), 6);
    EXPECT_EQ(config->GetLong("x", 5), 6);
    EXPECT_EQ(config->GetDouble("x", 0.5), 1.5);
    EXPECT_FALSE(config->GetBool("x", true));
    service.text = std::string(1023, 't');
    EXPECT_EQ(config->GetString("x", "default"), service.text);
    service.text += "t";
    EXPECT_EQ(config->GetString("x", "default"), "default");
}

}  // namespace
