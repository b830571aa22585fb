// Tracing in a process of its own: the core plugin, settings that a test chooses, a data plugin that keeps what it is
// given.
#ifndef ORVANE_TESTS_YARROW_TRACE_FIXTURE_H
#define ORVANE_TESTS_YARROW_TRACE_FIXTURE_H

#include <gmock/gmock.h>

#include "PluginManager/InnerPlugin/OrvaneCoreInnerPlugin.h"
#include "PluginManager/InnerPlugin/Yarrow/TraceService.h"
#include "Support/CapturedConsole.h"
#include "Support/CoreSettings.h"
#include "Support/FakeConfigure.h"
#include "Support/FakePlugins.h"
#include "Support/TestContainer.h"

namespace OrvaneTest {

class TraceFixture : public testing::Test {
protected:
    TraceFixture() {
        CacheFolder();
        auto* core = Orvane::Plugin::Singleton<Orvane::Plugin::OrvaneCoreInnerPlugin>::GetInstance();
        core->GetCachePluginManager();
        Set("YarrowEnable", "true");
    }
    ~TraceFixture() override { Orvane::Plugin::TraceService::ReleaseInstance(); }

    void Set(const std::string& key, const std::string& value) { configure.Set("OrvaneCore", key, value); }
    Orvane::Plugin::TraceService& Service() { return *Orvane::Plugin::TraceService::GetInstance(); }
    // The service over the settings as they are now.
    Orvane::Plugin::TraceService& NewService() {
        Orvane::Plugin::TraceService::ReleaseInstance();
        return Service();
    }

    const std::string stock = CacheFolder() + "/traceids.store";
    FakeConfigure configure;
    CapturedConsole console;
    Journal journal;
    FakePell pell{&journal};

private:
    // The core plugin's services, with the settings among them.
    class Settings final : public CoreSettings {
        long long GetLong(const char* key, long long otherwise) override {
            return Orvane::Configure::GetInstance()->GetLong("OrvaneCore", key, otherwise);
        }
        bool GetBool(const char* key, bool otherwise) override {
            return Orvane::Configure::GetInstance()->GetBool("OrvaneCore", key, otherwise);
        }
        bool GetString(const char* key, char* buffer, int& length, const char* otherwise) override {
            const Quern::AString text = Orvane::Configure::GetInstance()->GetString("OrvaneCore", key, otherwise);
            return snprintf(buffer, static_cast<size_t>(length), "%s", text.c_str()) < length;
        }
    };
    class Core final : public FakePlugin {
    public:
        Core() : FakePlugin("OrvaneCore", "1.5") {}
        Orvane::Plugin::IPluginService* GetServiceByName(const char* name) override {
            if (strcmp(name, "REMOTECONFIG") == 0) return &_settings;
            return Orvane::Plugin::Singleton<Orvane::Plugin::OrvaneCoreInnerPlugin>::GetInstance()->GetServiceByName(
                name);
        }

    private:
        Settings _settings;
    };
    Core _core;
};

}  // namespace OrvaneTest

#endif
