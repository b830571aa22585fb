#include "PluginManager/ServiceManager.h"

#include "Support/FakePlugins.h"
#include "Support/Test.h"

namespace {

using Orvane::Plugin::ServiceManager;
using namespace OrvaneTest;

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
    for (const char* none : {"report", "PELL", static_cast<const char*>(nullptr)})
        EXPECT_EQ(services->GetServiceByName(none), nullptr);
    EXPECT_TRUE(services->loadEnabledService() && services->loadDefaultEnabledService());
    EXPECT_EQ(services->GetServiceByName("Report"), &pell);
}

}  // namespace
