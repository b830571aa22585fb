#include "PluginManager/PluginManager.h"

#include <stdexcept>

#include "PluginManager/ServiceRegister.h"
#include "Support/FakePlugins.h"
#include "Support/Test.h"

namespace {

using Orvane::Plugin::PluginManager;
using namespace OrvaneTest;

class PluginManagerTest : public testing::Test {
protected:
    std::vector<std::string> Names() {
        std::vector<std::string> names;
        for (const char* const* name = manager->GetAllPluginNames(); *name; ++name)
            names.emplace_back(*name);
        return names;
    }

    PluginManager* manager = PluginManager::GetInstance();
    CapturedConsole console;
    Journal journal;
};

TEST_F(PluginManagerTest, IsMadeOnceAndToldItsVersion) {
    PluginManager::ReleaseInstance();
    PluginManager::ReleaseInstance();
    EXPECT_THAT(console.Take(),
                ElementsAre(Format("Info PluginManager::~PluginManager():%p", static_cast<void*>(manager))));
    manager = PluginManager::GetInstance();
    EXPECT_EQ(PluginManager::GetInstance(), manager);
    EXPECT_THAT(console.Take(),
                ElementsAre(Format("Info PluginManager::PluginManager():%p", static_cast<void*>(manager)),
                            MatchesRegex("Event version 1\\.5\\.11\\.2664,hash [0-9a-f]{40},"
                                         "version_tag ORVANE_VERSION_ORVANECORE_1\\.5\\.11\\.2664")));
}

TEST_F(PluginManagerTest, RefusesWhatHasNoNameOrVersion) {
    OrvaneTest::IdlePlugin nameless(nullptr, "1"), versionless("V", nullptr);
    for (const bool result : {manager->Install(nullptr), manager->Install(&nameless), manager->Install(&versionless),
                              manager->Uninstall(nullptr), manager->Uninstall(&nameless),
                              manager->UninstallByName(nullptr), manager->GetPluginByName(nullptr) != nullptr})
        EXPECT_FALSE(result);
    EXPECT_THAT(console.Take(), ElementsAre("Error PluginManager::Install Fail, plugin is null",
                                            "Error PluginManager::Install Fail, pluginName is null",
                                            "Error PluginManager::Install Fail, pluginVersion is null",
                                            "Error PluginManager::Uninstall plugin is null",
                                            "Error PluginManager::Uninstall pluginName is null",
                                            "Error PluginManager::Uninstall pluginName is null",
                                            "Error PluginManager::GetPluginByName pluginName is null"));
    EXPECT_THAT(*manager->GetPluginCollection(), IsEmpty());
}

TEST_F(PluginManagerTest, TheLaterInstallationReplacesTheEarlierSilently) {
    FakePlugin first("Same", "1.0", &journal);
    first.declared = {"OLD"};
    manager->Startup();
    journal.clear();
    console.Take();
    FakePlugin second("Same", "2.0", &journal);
    EXPECT_THAT(console.Take(),
                ElementsAre(Format("Info PluginManager::Install Success, plugin:%p, pluginName:Same, pluginVersion:2.0",
                                   static_cast<void*>(static_cast<Orvane::Plugin::IPlugin*>(&second)))));
    ASSERT_EQ(manager->GetPluginCollection()->size(), 1u);
    const auto& descriptor = manager->GetPluginCollection()->at("Same");
    EXPECT_EQ(descriptor.plugin, &second);
    EXPECT_EQ(descriptor.pluginName, "Same");
    EXPECT_EQ(descriptor.pluginVersion, "2.0");
    EXPECT_THAT(descriptor.serviceNames, IsEmpty());
    EXPECT_THAT(journal, IsEmpty());
}

TEST_F(PluginManagerTest, EveryWalkGoesForwardInByteOrderOfNames) {
    FakePlugin lower("alpha", "1", &journal), upper("Zeta", "1", &journal), digit("9", "1", &journal);
    manager->GetPluginCollection()->emplace("M", Orvane::Plugin::_tagPluginDescriptor());  // no plugin: passed over
    manager->Startup();
    manager->PostStartup();
    manager->PreShutdown();
    manager->Shutdown();
    EXPECT_THAT(journal, ElementsAre("9 OnStartup", "Zeta OnStartup", "alpha OnStartup",              //
                                     "9 OnPostStartup", "Zeta OnPostStartup", "alpha OnPostStartup",  //
                                     "9 OnPreShutdown", "Zeta OnPreShutdown", "alpha OnPreShutdown",  //
                                     "9 OnShutdown", "Zeta OnShutdown", "alpha OnShutdown"));
    manager->Shutdown();
    EXPECT_EQ(journal.size(), 15u) << "no walk guards its repetition";
}

TEST_F(PluginManagerTest, StartupRecordsTheDeclaredServices) {
    FakePlugin plugin("P");
    plugin.declared = {"B", "A", "B"};
    manager->Startup();
    EXPECT_THAT(manager->GetPluginCollection()->at("P").serviceNames, ElementsAre("B", "A", "B"));
    EXPECT_THAT(console.Take(), Contains("Info ServiceRegister::Register serviceName:A"));
    plugin.declared = {"C"};
    manager->Startup();
    EXPECT_THAT(manager->GetPluginCollection()->at("P").serviceNames, ElementsAre("C"));

    Orvane::Plugin::ServiceRegister services;
    console.Take();
    EXPECT_FALSE(services.Register(nullptr));
    EXPECT_THAT(console.Take(), ElementsAre("Error ServiceRegister::Register serviceName is null"));
    EXPECT_THAT(services.GetServiceNames(), IsEmpty());
}

TEST_F(PluginManagerTest, TheNamesStandFromOnePostStartupToTheNext) {
    EXPECT_EQ(manager->GetAllPluginNames(), nullptr);
    manager->PostStartup();
    FakePlugin b("b"), a("a");
    EXPECT_THAT(Names(), IsEmpty());
    manager->PostStartup();
    const char* const* earlier = manager->GetAllPluginNames();
    EXPECT_THAT(Names(), ElementsAre("a", "b"));
    EXPECT_TRUE(manager->UninstallByName("a"));
    EXPECT_TRUE(manager->Uninstall(&b));
    EXPECT_TRUE(manager->Uninstall(&b)) << "it need not be installed";
    EXPECT_TRUE(manager->UninstallByName("nobody"));
    EXPECT_THAT(Names(), ElementsAre("a", "b"));
    manager->PostStartup();
    EXPECT_THAT(Names(), IsEmpty());
    EXPECT_STREQ(earlier[1], "b") << "what was handed out stays readable";
}

TEST_F(PluginManagerTest, FindsByExactNameWithOneAlias) {
    FakePlugin core("OrvaneCore"), other("ORVANECORE2");
    console.Take();
    EXPECT_EQ(manager->GetPluginByName("OrvaneCore"), &core);
    EXPECT_THAT(console.Take(), IsEmpty());
    EXPECT_EQ(manager->GetPluginByName("ORVANECORE"), &core);
    EXPECT_EQ(manager->GetPluginByName("orvanecore"), nullptr);
    EXPECT_THAT(console.Take(),
                ElementsAre("Warning format PluginName ORVANECORE", "Warning plugin:orvanecore not exist:"));
}

TEST_F(PluginManagerTest, APluginMayChangeTheRegistryInsideAWalk) {
    FakePlugin first("1", "1", &journal), second("2", "1", &journal), third("3", "1", &journal);
    first.declared = {"GONE"};
    first.actions["OnStartup"] = [&] { manager->Uninstall(&first); };
    second.actions["OnStartup"] = [&] {
        manager->Install(&second);
        manager->Uninstall(&third);
    };
    second.declared = {"KEPT"};
    manager->Startup();
    EXPECT_THAT(journal, ElementsAre("1 OnStartup", "2 OnStartup"));
    ASSERT_EQ(manager->GetPluginCollection()->size(), 1u);
    EXPECT_THAT(manager->GetPluginCollection()->at("2").serviceNames, ElementsAre("KEPT"));
    manager->Install(&third);
    journal.clear();
    second.actions["OnPostStartup"] = [] { throw std::runtime_error("broken"); };
    EXPECT_THROW(manager->PostStartup(), std::runtime_error);
    EXPECT_THAT(journal, ElementsAre("2 OnPostStartup")) << "one that throws ends the walk";
}

TEST_F(PluginManagerTest, ThreadsLookUpWhilePluginsComeGoAndStart) {
    FakePlugin core("OrvaneCore", "1.0");
    std::atomic<bool> isDone{false};
    std::atomic<long> found{0}, lost{0};
    std::vector<std::jthread> readers;
    for (int reader = 0; reader < 32; ++reader) {
        readers.emplace_back([&] {
            do {
                manager->GetPluginByName("Guest7");
                const auto plugins = manager->CopyPlugins();
                lost += manager->GetPluginByName("ORVANECORE") != &core || plugins.count("OrvaneCore") == 0;
                ++found;
            } while (!isDone);
        });
    }
    for (int round = 0; round < 20 || found < 100; ++round) {
        std::vector<std::unique_ptr<FakePlugin>> guests;
        for (int guest = 0; guest < 10; ++guest) {
            guests.push_back(std::make_unique<FakePlugin>("Guest" + std::to_string(guest)));
            guests.back()->declared = {"SERVICE"};
        }
        manager->Startup();
    }
    isDone = true;
    readers.clear();
    EXPECT_EQ(lost, 0);
}

}  // namespace
