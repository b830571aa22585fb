#include "PluginManager/InnerPlugin/OrvaneCoreInnerPlugin.h"

#include <gmock/gmock.h>

#include "PluginManager/InnerPlugin/ConfigFileService.h"
#include "PluginManager/InnerPlugin/OrvaneCoreLogService.h"
#include "PluginManager/InnerPlugin/OrvaneCoreReportService.h"
#include "PluginManager/InnerPlugin/RemoteConfigService.h"
#include "PluginManager/ServiceRegister.h"
#include "Support/CapturedConsole.h"

namespace {

using namespace Orvane::Plugin;
using testing::Contains;
using testing::ElementsAre;

TEST(OrvaneCoreInnerPlugin, ServesByExactName) {
    OrvaneTest::CapturedConsole console;
    OrvaneCoreInnerPlugin* core = Singleton<OrvaneCoreInnerPlugin>::GetInstance();
    EXPECT_EQ(Singleton<OrvaneCoreInnerPlugin>::GetInstance(), core);
    IPlugin* plugin = core;
    EXPECT_STREQ(plugin->GetName(), "OrvaneCore");
    EXPECT_STREQ(plugin->GetVersion(), "1.5.11.2664");

    EXPECT_EQ(plugin->GetServiceByName("COREREPORT"), OrvaneCoreReportSerivce::GetInstance());
    EXPECT_EQ(plugin->GetServiceByName("REMOTECONFIG"), RemoteConfigSerivce::GetInstance());
    EXPECT_EQ(plugin->GetServiceByName("LOG"), OrvaneCoreLogSerivce::GetInstance());
    EXPECT_EQ(plugin->GetServiceByName("REMOTECONFIGEX"), RemoteConfigExSerivce::GetInstance());
    EXPECT_EQ(plugin->GetServiceByName("CONFIGFILE"), Orvane::ConfigFileSerivce::GetInstance());
    EXPECT_EQ(plugin->GetServiceByName("log"), nullptr);
    EXPECT_EQ(plugin->GetServiceByName(""), nullptr);
    EXPECT_EQ(plugin->GetServiceByName(nullptr), nullptr);
    EXPECT_THAT(console.Take(), Contains("Debug OrvaneCoreInnerPlugin::GetServiceByName serviceName:log"));

    for (const char* name : {"COREREPORT", "YARROW", "REMOTECONFIG", "LOG", "REMOTECONFIGEX", "CONFIGFILE"}) {
        EXPECT_STREQ(plugin->GetServiceByName(name)->GetName(), name);
        EXPECT_STREQ(plugin->GetServiceByName(name)->GetPluginName(), "OrvaneCore");
    }
}

TEST(OrvaneCoreInnerPlugin, DeclaresFourServicesAndTellsItsStages) {
    OrvaneTest::CapturedConsole console;
    IPlugin* plugin = Singleton<OrvaneCoreInnerPlugin>::GetInstance();
    ServiceRegister services;
    plugin->OnStartup(&services);
    EXPECT_THAT(services.GetServiceNames(), ElementsAre("COREREPORT", "YARROW", "REMOTECONFIG", "CONFIGFILE"));
    console.Take();
    plugin->OnStartup(nullptr);
    plugin->OnPostStartup();
    plugin->OnPreShutdown();
    plugin->OnShutdown();
    EXPECT_THAT(
        console.Take(),
        testing::IsSupersetOf({"Info OrvaneCoreInnerPlugin::OnStartup", "Info OrvaneCoreInnerPlugin::OnPostStartup",
                               "Info OrvaneCoreInnerPlugin::OnPreShutdown", "Info OrvaneCoreInnerPlugin::OnShutdown"}));
}

TEST(RemoteConfigService, KeepsOneObjectANamePastItsRelease) {
    OrvaneTest::CapturedConsole console;
    PluginBase* const core = Singleton<OrvaneCoreInnerPlugin>::GetInstance();
    EXPECT_EQ(RemoteConfigExSerivce::GetInstance()->GetRemoteConfig(nullptr), nullptr);
    EXPECT_THAT(console.Take(), ElementsAre("Error pBase is Null"));
    std::vector<Orvane::IRemoteConfig*> given(8);
    std::vector<std::thread> threads;
    for (auto& one : given)
        threads.emplace_back([&] { one = RemoteConfigSerivce::GetInstance()->GetRemoteConfig(core); });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_THAT(given, testing::Each(RemoteConfigExSerivce::GetInstance()->GetRemoteConfig(core)));
    RemoteConfigSerivce::ReleaseInstance();
    EXPECT_EQ(given[0]->GetInt(nullptr, 7), 7);
    EXPECT_NE(RemoteConfigSerivce::GetInstance()->GetRemoteConfig(core), given[0]);
}

}  // namespace
