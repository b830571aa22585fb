// Tracing in a process of its own: the core plugin, settings that a test chooses, a data plugin that writes down what
// it is given.
#ifndef ORVANE_TESTS_YARROW_TRACE_FIXTURE_H
#define ORVANE_TESTS_YARROW_TRACE_FIXTURE_H

#include "PluginManager/InnerPlugin/Yarrow/TraceService.h"
#include "Support/FakeConfigure.h"
#include "Support/FakeInfoDictionary.h"
#include "Support/FakePlugins.h"
#include "Support/Test.h"

namespace OrvaneTest {

class TraceFixture : public testing::Test {
protected:
    TraceFixture() {
        InstallCorePlugin();
        Set("YarrowEnable", "true");
        info.Set("Orvane", "GameId", info.Text("4886718345"));  // 0x123456789: beyond 32 bits
    }
    ~TraceFixture() override { Orvane::Plugin::TraceService::ReleaseInstance(); }

    void Set(const char* key, const std::string& value) { configure.Set("OrvaneCore", key, value); }
    Orvane::Plugin::TraceService& Service() { return *Orvane::Plugin::TraceService::GetInstance(); }
    // The service over the settings as they are now.
    Orvane::Plugin::TraceService& NewService() {
        Orvane::Plugin::TraceService::ReleaseInstance();
        return Service();
    }

    const std::string stock = CacheFolder() + "/traceids.store";
    FakeInfoDictionary info;
    FakeConfigure configure;
    CapturedConsole console;
    Journal journal;
    FakePell pell{&journal};
};

}  // namespace OrvaneTest

#endif
