#include "PluginManager/ServiceManager.h"

#include <gmock/gmock.h>

#include "Support/CapturedConsole.h"
#include "Support/FakePlugins.h"

namespace {

using Orvane::Plugin::ServiceManager;
using OrvaneTest::FakePlugin;
using OrvaneTest::Format;
using testing::ElementsAre;

TEST(ServiceManager, FindsAServiceThroughThePluginThatOffersIt) {
    ServiceManager* services = ServiceManager::GetInstance();
    EXPECT_EQ(services->GetServiceByName("Report"), nullptr) << "no plugin PELL";

    OrvaneTest::Journal journal;
    OrvaneTest::FakePell pell(&journal);
    EXPECT_EQ(services->GetServiceByName("Report"), nullptr) << "the plugin serves another name";
    pell.plugin().services["Report"] = &pell;
    EXPECT_EQ(services->GetServiceByName("Report"), &pell);
    FakePlugin cadmo("CADMO");
    cadmo.services["Account"] = &pell;
    EXPECT_EQ(services->GetServiceByName("Account"), &pell);
    EXPECT_EQ(services->GetServiceByName("report"), nullptr);
    EXPECT_EQ(services->GetServiceByName("PELL"), nullptr);
    EXPECT_EQ(services->GetServiceByName(nullptr), nullptr);
    EXPECT_TRUE(services->loadEnabledService());
    EXPECT_TRUE(services->loadDefaultEnabledService());
    EXPECT_EQ(services->GetServiceByName("Report"), &pell);
}

TEST(ServiceManager, TellsOfItsMakingAndItsEnd) {
    OrvaneTest::CapturedConsole console;
    void* services = ServiceManager::GetInstance();
    ServiceManager::ReleaseInstance();
    ServiceManager::ReleaseInstance();
    EXPECT_THAT(console.Take(), ElementsAre(Format("Info ServiceManager::ServiceManager():%p", services),
                                            Format("Info ServiceManager::~ServiceManager():%p", services)));
}

}  // namespace
