#include "PluginManager/InnerPlugin/OrvaneCoreInnerPlugin.h"

#include "Base/Configure/FileUploader.h"
#include "Base/QuernCommon.h"
#include "PluginManager/InnerPlugin/RemoteConfigService.h"
#include "Storage/Bundle/BundleFactory.h"
#include "Support/FakeConfigure.h"
#include "Support/FakePlugins.h"
#include "Support/Test.h"
#include "System/Application/MainRunLoop.h"

namespace {

using namespace Orvane::Plugin;

// The first base's table, declared a second time: the two destructors, then the one operation.
struct Target {
    virtual ~Target() {}
    virtual void Run(void* operation, void* data) = 0;
};

TEST(OrvaneCoreInnerPlugin, BeginsWithTheTargetOfItsOperations) {
    struct Heard final : Quern::OperationTargetBase {
        void DoOperation(Quern::ObjectOperation*, void* data) override { ++*static_cast<int*>(data); }
    } heard;
    int runs = 0;
    const auto run = [&runs](Quern::OperationTargetBase* target) {
        static_cast<Target*>(static_cast<void*>(target))->Run(nullptr, &runs);
    };
    run(&heard);
    EXPECT_EQ(runs, 1);
    OrvaneCoreInnerPlugin* const core = Singleton<OrvaneCoreInnerPlugin>::GetInstance();
    run(core);
    EXPECT_EQ(runs, 1) << "not overridden";
    EXPECT_EQ(static_cast<void*>(static_cast<Quern::OperationTargetBase*>(core)), static_cast<void*>(core));
}

TEST(OrvaneCoreInnerPlugin, ServesByExactName) {
    OrvaneTest::CapturedConsole console;
    IPlugin* plugin = Singleton<OrvaneCoreInnerPlugin>::GetInstance();
    EXPECT_EQ(Singleton<OrvaneCoreInnerPlugin>::GetInstance(), plugin);
    EXPECT_EQ(std::string(plugin->GetName()) + plugin->GetVersion(), "OrvaneCore1.5.11.2664");
    for (const char* none : {"log", "", static_cast<const char*>(nullptr)})
        EXPECT_EQ(plugin->GetServiceByName(none), nullptr);
    EXPECT_THAT(console.Take(), Contains("Debug OrvaneCoreInnerPlugin::GetServiceByName serviceName:log"));
    for (const char* name : {"COREREPORT", "YARROW", "REMOTECONFIG", "LOG", "REMOTECONFIGEX", "CONFIGFILE"}) {
        EXPECT_STREQ(plugin->GetServiceByName(name)->GetName(), name);
        EXPECT_STREQ(plugin->GetServiceByName(name)->GetPluginName(), "OrvaneCore");
    }
}

// Whom OnPostStartup takes for the user, as "channel openid", after a line if there is one.
std::string SettleUser() {
    OrvaneTest::CapturedConsole console;
    Singleton<OrvaneCoreInnerPlugin>::GetInstance()->OnPostStartup();
    std::string said;
    for (const std::string& line : console.Take())
        if (line.find("invalid") != std::string::npos) said += line + ": ";
    Quern::QuernCommon* const common = Quern::QuernCommon::GetInstance();
    said += std::string(common->GetChannelID()) + " " + common->GetOpenID();
    common->SetUserInfo("", "");
    return said;
}

TEST(OrvaneCoreInnerPlugin, SettlesWhoTheUserIs) {
    const std::string fits(128, 'x'), tooLong(129, 'x');
    const char kTooLong[] = "Warning bundle get openid or channelid is invalid!:  ";
    const struct {
        std::string channelId, openId, user;
    } kKept[] = {{"7", "", " "},
                 {"", "someone", " "},
                 {tooLong, "someone", kTooLong},
                 {"7", tooLong, kTooLong},
                 {fits, fits, fits + " " + fits}};
    for (const auto& kept : kKept) {
        Quern::BundleImpl& bundle = *Quern::BundleFactory::GetInstance()->GetDefaultBundle();
        bundle.Set("Config", "channelid", kept.channelId.c_str());
        bundle.Set("Config", "openid", kept.openId.c_str());
        EXPECT_EQ(SettleUser(), kept.user);
    }
    // With a login plugin, whatever it has, these do not count.
    const OrvaneTest::FakePlugin bare("RAVEL");
    EXPECT_EQ(SettleUser(), " ");
    OrvaneTest::FakeRavel login;
    login.channel = -17;
    login.openId = fits;
    EXPECT_EQ(SettleUser(), "-17 " + fits);
    login.loggedIn = false;
    EXPECT_EQ(SettleUser(), " ");
    login.loggedIn = login.replaces = true;
    EXPECT_EQ(SettleUser(), "-17 " + fits);
    for (const std::string& refused : {std::string(), tooLong}) {
        login.openId = refused;
        EXPECT_EQ(SettleUser(), "Error cRavelAccount.openID is NULL or len is invalid:  ");
    }
}

TEST(OrvaneCoreInnerPlugin, AGameWithoutAnIdIsToldOnceTheLaunchIsOver) {
    static std::vector<std::string> shown;
    orvane_class* const host = orvane_class_allocate("UIAlertController");
    orvane_class_add_class_method(
        host, "presentAlertWithTitle:message:action:", [](orvane_object*, const char*, void* const* texts) -> void* {
            shown.assign({static_cast<char*>(texts[0]), static_cast<char*>(texts[1]), static_cast<char*>(texts[2])});
            return nullptr;
        });
    orvane_class_register(host);
    OrvaneCoreInnerPlugin* const core = Singleton<OrvaneCoreInnerPlugin>::GetInstance();
    OrvaneTest::CapturedConsole console;
    core->onStartYarrowClient(nullptr, nullptr);  // without an operation nothing is started
    core->onStartConfigure(nullptr, nullptr);
    EXPECT_THAT(console.Take(), ElementsAre("Info OrvaneCoreInnerPlugin::onStartYarrowClient begin",
                                            "Info OrvaneCoreInnerPlugin::onStartYarrowClient end"));
    OrvaneTest::FakeConfigure configure;
    char operation = 0;  // which is not looked into
    core->onStartConfigure(reinterpret_cast<Quern::ObjectOperation*>(&operation), nullptr);
    EXPECT_EQ(configure.observers["Upload"], Orvane::FileUploader::GetInstance());
    core->OnStartup(nullptr);
    EXPECT_THAT(shown, ElementsAre());
    Quern::MainRunLoop::Current().RunPending();
    EXPECT_THAT(shown,
                ElementsAre("OrvaneSDK提示", "GameID为0，请确认Info.plist中是否正确配置GameId和GameKey。", "确定"));
}

TEST(RemoteConfigService, KeepsOneObjectANamePastItsRelease) {
    OrvaneTest::CapturedConsole console;
    PluginBase* const core = Singleton<OrvaneCoreInnerPlugin>::GetInstance();
    EXPECT_EQ(RemoteConfigExSerivce::GetInstance()->GetRemoteConfig(nullptr), nullptr);
    EXPECT_THAT(console.Take(), ElementsAre("Error pBase is Null"));
    std::vector<Orvane::IRemoteConfig*> given(8);
    std::vector<std::jthread> threads;
    for (auto& one : given)
        threads.emplace_back([&] { one = RemoteConfigSerivce::GetInstance()->GetRemoteConfig(core); });
    threads.clear();
    EXPECT_THAT(given, testing::Each(RemoteConfigExSerivce::GetInstance()->GetRemoteConfig(core)));
    RemoteConfigSerivce::ReleaseInstance();
    EXPECT_EQ(given[0]->GetInt(nullptr, 7), 7);
    EXPECT_NE(RemoteConfigSerivce::GetInstance()->GetRemoteConfig(core), given[0]);
}

}  // namespace
