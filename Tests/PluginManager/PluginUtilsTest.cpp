#include "PluginManager/PluginUtils.h"

#include "Orvane/PluginBase.h"
#include "Support/FakePlugins.h"
#include "Support/Test.h"

namespace {

using Orvane::Plugin::IPluginManager;
using Orvane::Plugin::PluginManager;
using namespace OrvaneTest;

orvane_object* Shared() {
    return static_cast<orvane_object*>(
        orvane_class_perform(orvane_class_lookup("PluginUtils"), "sharedInstance", nullptr));
}

TEST(PluginUtils, AManagerThatIsSetIsGivenOutAndNotDriven) {
    char other;
    orvane_object* wrapper = orvane_object_create(orvane_class_lookup("PluginUtilsWrapper"));
    void* arguments[] = {&other};
    orvane_object_perform(wrapper, "setNativePluginManager:", arguments);
    EXPECT_EQ(orvane_object_perform(wrapper, "getNativePluginManager", nullptr), &other);
    EXPECT_EQ(orvane_object_perform(Shared(), "getNativePluginManager", nullptr), &other);
    EXPECT_EQ(static_cast<void*>(Orvane::Plugin::gs_GetOrvanePluginManager()), &other);

    Journal journal;
    FakePlugin plugin("P", "1", &journal);
    orvane_object_perform(Shared(), "nativeStartup", nullptr);
    EXPECT_THAT(journal, ElementsAre("P OnStartup"));

    arguments[0] = nullptr;
    orvane_object_perform(Shared(), "setNativePluginManager:", arguments);
    EXPECT_EQ(Orvane::Plugin::gs_GetOrvanePluginManager(), nullptr);
    orvane_object_release(wrapper);
}

TEST(PluginBase, RegistersOnlyThroughACachedManager) {
    FakePlugin plugin("P");
    PluginManager* manager = PluginManager::GetInstance();
    manager->Uninstall(&plugin);

    testing::internal::CaptureStderr();  // this code runs in sibling libraries too, and writes there by itself
    plugin.RegisterPlugin(&plugin);
    EXPECT_EQ(plugin.GetPluginManager(), nullptr);
    EXPECT_THAT(*manager->GetPluginCollection(), IsEmpty());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");

    testing::internal::CaptureStderr();
    plugin.GetCachePluginManager();
    plugin.GetCachePluginManager();
    EXPECT_EQ(plugin.GetPluginManager(), manager);
    plugin.RegisterPlugin(nullptr);
    EXPECT_THAT(*manager->GetPluginCollection(), IsEmpty());
    plugin.RegisterPlugin(&plugin);
    EXPECT_EQ(manager->GetPluginByName("P"), &plugin);

    const std::string at = Format("PluginManager:%p", static_cast<void*>(manager)),
                      of = Format("%p\n", static_cast<void*>(static_cast<Orvane::Plugin::IPlugin*>(&plugin)));
    const std::string text = testing::internal::GetCapturedStderr(),
                      looked = "gs_GetOrvanePluginManager p" + at.substr(1);
    EXPECT_NE(text.find(looked), std::string::npos);
    EXPECT_EQ(text.find(looked), text.rfind(looked)) << "looked up once";
    EXPECT_THAT(text, AllOf(HasSubstr("PluginBase::RegisterPlugin plugin is null\n"),
                            HasSubstr("PluginBase::RegisterPlugin " + at + " , IPlugin:" + of)));
}

}  // namespace
