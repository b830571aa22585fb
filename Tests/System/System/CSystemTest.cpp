#include "System/System/CSystem.h"

#include <dlfcn.h>

#include "Orvane/OrvaneCore.h"
#include "Storage/Bundle/BundleFactory.h"
#include "Support/FakeCoreSettings.h"
#include "Support/FakeDevice.h"
#include "Support/FakeInfoDictionary.h"
#include "Support/FakeKeychain.h"
#include "Support/FakePlugins.h"
#include "Support/Test.h"
#include "System/System/CSystemUnify.h"

namespace {

using namespace OrvaneTest;
using Quern::CSystem;
using Quern::CSystemUnify;

constexpr char kUdid[] = "320FC9484F9D0C0B45733192A5341E68";

TEST(CSystem, TellsWhatThePlatformTellsAndKeepsIt) {
    const auto device = FakeDevice::Install();
    FakeInfoDictionary manifest;
    manifest.Set("CFBundleVersion", FakeInfoDictionary::Text("456"));
    device->vendorId = device->model = device->systemVersion = "";
    EXPECT_STREQ(CSystem::GetUdid(), "F");
    EXPECT_STREQ(CSystem::GetBundleId(), "UNKNOWN");
    EXPECT_STREQ(CSystem::GetModel(), "");
    EXPECT_STREQ(CSystem::GetSysVersion(), "N");
    EXPECT_STREQ(CSystem::GetAppVersion(), "N");

    *device = FakeDevice();
    manifest.Set("CFBundleIdentifier", FakeInfoDictionary::Text("com.example.game"));
    manifest.Set("CFBundleShortVersionString", FakeInfoDictionary::Text("1.2.3"));
    for (int times = 0; times < 2; ++times) {
        EXPECT_STREQ(CSystem::GetUdid(), kUdid);
        EXPECT_STREQ(CSystem::GetBundleId(), "com.example.game");
        EXPECT_STREQ(CSystem::GetModel(), "Board9,4");
        EXPECT_STREQ(CSystem::GetSysVersion(), "17.5");
        EXPECT_STREQ(CSystem::GetAppVersion(), "1.2.3.456");
    }
    EXPECT_EQ(device->reads, 3);
    EXPECT_STREQ(CSystem::GetDeviceBrand(), "Apple");
    EXPECT_EQ(CSystem::GetFreeDiskSpace(), 5000000000);
    EXPECT_EQ(device->asked, "/var");
}

TEST(CSystem, ExportsWithTheirLines) {
    const auto device = FakeDevice::Install();
    FakeCoreSettings settings;
    CSystem::GetUdid();
    CapturedConsole console;

    char buffer[40];
    memset(buffer, '#', sizeof buffer);
    EXPECT_TRUE(Quern_system_GetUUID(buffer, 33));
    EXPECT_STREQ(buffer, kUdid);
    EXPECT_EQ(buffer[33], '#');
    EXPECT_THAT(console.Take(), ElementsAre("Info Quern_system_GetUUID"));
    memset(buffer, '#', sizeof buffer);
    for (const int size : {32, 0, -1}) {
        EXPECT_FALSE(Quern_system_GetUUID(buffer, size));
        EXPECT_THAT(console.Take(), ElementsAre("Info Quern_system_GetUUID", "Error Quern_system_GetUUID len>size"));
    }
    EXPECT_FALSE(Quern_system_GetUUID(nullptr, 33));
    EXPECT_EQ(Quern_system_GetIDFA(buffer, sizeof buffer), 0);
    EXPECT_EQ(std::string(buffer, sizeof buffer), std::string(sizeof buffer, '#'));

    EXPECT_TRUE(Quern_system_IsDeviceRooted());
    device->rooted = false;
    EXPECT_FALSE(Quern_system_IsDeviceRooted());
    console.Take();
    EXPECT_EQ(Quern_system_CheckPermission(3), -1);
    EXPECT_THAT(console.Take(), ElementsAre("Warning CheckPermission is deprecated"));
}

TEST(CSystem, DescribesThisMachine) {
    FakeInfoDictionary manifest;
    manifest.Set("CFBundleIdentifier", FakeInfoDictionary::Text("com.example.game"));
    Quern::DeviceFacts& device = Quern::DeviceFacts::Current();
    EXPECT_NE(device.Model(), "");
    EXPECT_NE(device.SystemVersion(), "");
    EXPECT_GT(device.FreeSpace("/"), 0);
    EXPECT_EQ(device.FreeSpace("/no/such/path"), -1);
    const std::string id = device.VendorId();
    if (id.empty()) GTEST_SKIP() << "this machine has no id";
    EXPECT_THAT(id, MatchesRegex("[0-9A-F]{8}-[0-9A-F]{4}-3[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}"));
    manifest.Set("CFBundleIdentifier", FakeInfoDictionary::Text("com.example.sequel"));
    EXPECT_EQ(device.VendorId(), id);
    manifest.Set("CFBundleIdentifier", FakeInfoDictionary::Text("org.example.game"));
    EXPECT_NE(device.VendorId(), id);
}

class FirstLaunch : public testing::Test {
protected:
    FirstLaunch() {
        CacheFolder();
        FakeKeychain::Install();
    }
    std::string Stored() const {
        return Quern::BundleFactory::GetInstance()->GetDefaultBundle()->Get("Quern", "AppVersion", "").c_str();
    }
    FakeInfoDictionary manifest;
};

TEST_F(FirstLaunch, IsNoneForAVersionOfOneDot) {
    manifest.Set("CFBundleShortVersionString", FakeInfoDictionary::Text("1.2"));
    EXPECT_FALSE(CSystem::IsFirstLaunch());
    EXPECT_EQ(Stored(), "");
}

TEST_F(FirstLaunch, IsOneForAnyOtherVersionEvenIfItIsStored) {
    manifest.Set("CFBundleShortVersionString", FakeInfoDictionary::Text("1.2"));
    manifest.Set("CFBundleVersion", FakeInfoDictionary::Text("3"));
    Quern::BundleFactory::GetInstance()->GetDefaultBundle()->Set("Quern", "AppVersion", "1.2.3");
    EXPECT_TRUE(CSystem::IsFirstLaunch());
    EXPECT_EQ(Stored(), "1.2.3");
    Quern::BundleFactory::GetInstance()->GetDefaultBundle()->Set("Quern", "AppVersion", "later");
    EXPECT_TRUE(CSystem::IsFirstLaunch());
    EXPECT_EQ(Stored(), "later");
}

TEST(CSystemUnify, LooksForNoPluginWhileTheSwitchIsOff) {
    const auto device = FakeDevice::Install();
    Journal journal;
    FakePell pell(&journal);
    pell.device["Model"] = "of the plugin";
    FakeCoreSettings settings;
    EXPECT_STREQ(CSystem::GetModel(), "Board9,4");
    settings.values["UnifyDeviceInfo"] = 1;  // read once
    EXPECT_STREQ(CSystem::GetModel(), "Board9,4");
    EXPECT_EQ(CSystemUnify::GetUdid(), nullptr);
    EXPECT_THAT(journal, IsEmpty());
    EXPECT_THAT(settings.reads, ElementsAre("UnifyDeviceInfo=0"));
}

TEST(CSystemUnify, HoldsNothingWhileTheSettingIsRead) {
    struct ComesBack : FakeCoreSettings {
        long long GetLong(const char* key, long long) override {
            if (!std::exchange(isInside, true)) {
                alarm(60);
                std::thread(CSystemUnify::GetModel).join();  // as a log callback on another thread may
                isInside = false;
                return 1;
            }
            return std::string_view(key) == "UnifyDeviceInfo" ? 0 : 1;
        }
        bool isInside = false;
    } settings;
    Journal journal;
    FakePell pell(&journal);
    pell.device["Model"] = "m";
    EXPECT_EQ(CSystemUnify::GetModel(), nullptr);  // whoever was first decides
}

TEST(CSystemUnify, AsksUntilThePluginAnswers) {
    const auto device = FakeDevice::Install();
    FakeInfoDictionary manifest;
    FakeCoreSettings settings;
    settings.values["UnifyDeviceInfo"] = 1;
    EXPECT_STREQ(CSystem::GetModel(), "Board9,4");  // no plugin yet

    Journal journal;
    FakePell pell(&journal);
    EXPECT_STREQ(CSystem::GetModel(), "Board9,4");
    EXPECT_STREQ(CSystem::GetModel(), "Board9,4");
    pell.device = {{"UUID", "u"},      {"BundleId", "b"},     {"Model", "m"},
                   {"SysVersion", ""}, {"AppVersion", "1.0"}, {"Brand", "x"}};
    for (int times = 0; times < 2; ++times) {
        EXPECT_STREQ(CSystem::GetModel(), "m");
        EXPECT_STREQ(CSystem::GetUdid(), "u");
        EXPECT_STREQ(CSystem::GetBundleId(), "b");
        EXPECT_STREQ(CSystem::GetSysVersion(), "");
        EXPECT_STREQ(CSystem::GetAppVersion(), "1.0");
        EXPECT_STREQ(CSystem::GetDeviceBrand(), "Apple");
        EXPECT_STREQ(CSystemUnify::GetDeviceBrand(), "x");
    }
    EXPECT_THAT(journal,
                ElementsAre("device info Model 2048", "device info Model 2048", "device info Model 2048",
                            "device info UUID 2048", "device info BundleId 2048", "device info SysVersion 2048",
                            "device info AppVersion 2048", "device info Brand 2048"));
}

TEST(CSystemUnify, TakesAnAnswerThatFillsItsBuffer) {
    FakeCoreSettings settings;
    settings.values["UnifyDeviceInfo"] = 1;
    Journal journal;
    FakePell pell(&journal);
    pell.device["Model"] = std::string(3000, 'm');
    EXPECT_EQ(std::string(CSystem::GetModel()), std::string(2048, 'm'));
}

#ifdef ORVANE_PLUGIN_FOLDER
// Through the real data plugin, as a library of its own.
TEST(CSystemUnify, ReachesTheDataPluginsLibrary) {
    const auto device = FakeDevice::Install();
    const std::string path = CacheFolder() + "/device";
    WriteFile(path, "UUID=0123\nModelName=no\nModel=Console 3=x\nBrand=" + std::string(3000, 'b') + "\n");
    setenv("PELL_DEVICE", path.c_str(), 1);
    FakeCoreSettings settings;
    settings.values["UnifyDeviceInfo"] = 1;
    ASSERT_NE(dlopen(ORVANE_PLUGIN_FOLDER "/libPell.so", RTLD_NOW), nullptr) << dlerror();
    EXPECT_STREQ(CSystem::GetModel(), "Console 3=x");
    EXPECT_STREQ(CSystem::GetSysVersion(), "17.5");
    EXPECT_EQ(std::string(CSystemUnify::GetDeviceBrand()), std::string(2047, 'b'));
    char buffer[8];
    EXPECT_TRUE(Quern_system_GetUUID(buffer, sizeof buffer));
    EXPECT_STREQ(buffer, "0123");
}
#endif

}  // namespace
