#include "PluginManager/InnerPlugin/RemoteConfigService.h"

#include <gmock/gmock.h>

#include "Support/CapturedConsole.h"
#include "Support/FakeConfigure.h"
#include "Support/FakePlugins.h"

namespace {

using namespace Orvane::Plugin;
using Orvane::IRemoteConfig;
using testing::ElementsAre;

TEST(RemoteConfigService, GivesOneObjectAName) {
    OrvaneTest::FakeConfigure configure;
    OrvaneTest::CapturedConsole console;
    IRemoteConfigService* const service = RemoteConfigSerivce::GetInstance();
    IRemoteConfigExService* const ex = RemoteConfigExSerivce::GetInstance();
    EXPECT_EQ(service->GetRemoteConfig(nullptr), nullptr);
    EXPECT_EQ(ex->GetRemoteConfig(nullptr), nullptr);
    EXPECT_THAT(console.Take(), ElementsAre("Error pBase is Null", "Error pBase is Null"));
    EXPECT_EQ(ex->GetVersion(), 1);

    OrvaneTest::FakePlugin pell("PELL"), twin("PELL"), ravel("RAVEL");
    configure.Set("PELL", "n", "3");
    IRemoteConfig* const first = service->GetRemoteConfig(&pell);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->GetInt("n", 0), 3);
    EXPECT_EQ(ex->GetRemoteConfig(&twin), first);
    EXPECT_NE(ex->GetRemoteConfig(&ravel), first);
    RemoteConfigSerivce::ReleaseInstance();
    EXPECT_EQ(first->GetInt("n", 0), 3);  // outlives the service
    EXPECT_NE(RemoteConfigSerivce::GetInstance()->GetRemoteConfig(&pell), first);

    // Of many that ask first, all get the same.
    std::vector<IRemoteConfig*> given(8);
    std::vector<std::thread> threads;
    for (IRemoteConfig*& one : given)
        threads.emplace_back([&one, &ravel] { one = RemoteConfigSerivce::GetInstance()->GetRemoteConfig(&ravel); });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(given, std::vector<IRemoteConfig*>(8, given[0]));
}

}  // namespace
