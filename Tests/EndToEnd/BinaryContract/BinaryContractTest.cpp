// Loads the product and a sibling that share no symbol and no header, and drives them as an application does.
#include "Product.h"
#include "Support/Test.h"

namespace {

using namespace Contract;

std::string g_heard;

void* Launched(orvane_object*, const char*, void* const*) {
    g_heard += "delegate launched\n";
    return reinterpret_cast<void*>(1);
}

TEST(BinaryContract, ASiblingInAProcessWithoutTheHostFindsNothing) {
    void* sibling = Load(SIBLING_LIBRARY);
    EXPECT_EQ(Symbol<void* (*)()>(sibling, "sibling_find_host")(), nullptr);
    EXPECT_STREQ(Symbol<const char* (*)()>(sibling, "sibling_journal")(), "");

    Load(CORE_LIBRARY);
    EXPECT_NE(Symbol<void* (*)()>(sibling, "sibling_find_host")(), nullptr);
}

TEST(BinaryContract, TheLibraryLoadsForItselfAloneAndForGood) {
    void* core = Load(CORE_LIBRARY);
    EXPECT_EQ(dlsym(RTLD_DEFAULT, "orvanecore_getInstance"), nullptr) << "loaded for itself alone";
    dlclose(core);
    EXPECT_NE(dlopen(CORE_LIBRARY, RTLD_NOW | RTLD_NOLOAD), nullptr) << "never unmapped under its threads";
}

TEST(BinaryContract, TheFacadeIsCalledByItsSlots) {
    void* core = Load(CORE_LIBRARY);
    const auto getInstance = Symbol<Facade* (*)()>(core, "orvanecore_getInstance");
    ASSERT_NE(getInstance, nullptr);
    Facade* facade = getInstance();
    testing::internal::CaptureStderr();
    EXPECT_EQ(facade->Start(), 0);
    facade->Threshold(3);
    EXPECT_STREQ(facade->Version(), "1.5.11.2664");
    facade->Server("http://127.0.0.1:1");  // where nobody listens
    facade->ForgetAnswer();
    EXPECT_THAT(testing::internal::GetCapturedStderr(), Not(HasSubstr("~COrvaneCore")));
    EXPECT_EQ(getInstance(), facade);
}

struct HeardStages final : Stages {
    void Create() override { g_heard += "create "; }
    void Start() override { g_heard += "start "; }
    void Pause() override { g_heard += "pause "; }
    void Resume() override { g_heard += "resume "; }
    void Stop() override { g_heard += "stop "; }
    void Destroy() override { g_heard += "destroy "; }
};

TEST(BinaryContract, NativeObserversAreCalledByTheirSlots) {
    Load(CORE_LIBRARY);
    const orvane_class* application = orvane_class_lookup("CApplication");
    HeardStages stages;
    void* arguments[] = {static_cast<Stages*>(&stages)};
    orvane_class_perform(application, "addObserver:", arguments);
    for (const char* stage : {"OnCreate", "OnStart", "OnPause", "OnResume", "OnStop", "OnDestroy"})
        orvane_class_perform(application, stage, nullptr);
    orvane_class_perform(application, "removeObserver:", arguments);
    orvane_class_perform(application, "OnCreate", nullptr);
    EXPECT_EQ(g_heard, "create start pause resume stop destroy ");
}

struct HeardHalf final : Quern::CPlatformObject {
    ~HeardHalf() override {
        g_heard += std::string(name ? name : "") + std::to_string(id) + " ";
        free(name);
    }
};

struct HeardHalfMaker final : HalfMaker {
    Quern::IPlatformObject* Make() override { return new HeardHalf; }
};

TEST(BinaryContract, NativeHalvesAreMadeKeptAndDeletedByTheirSlots) {
    void* core = Load(CORE_LIBRARY);
    auto* bridge = Get<Bridge>("OrvanePlatformBridge", "getNativeBridge");
    const auto create = Symbol<bool (*)(const char*, unsigned long long)>(core, "CreatePlatformObject");
    ASSERT_TRUE(bridge && create);
    static HeardHalfMaker maker;
    bridge->EnterMaker("X.RESP", &maker);
    bridge->EnterObject("X", new HeardHalf);
    EXPECT_TRUE(create("X", 7));
    EXPECT_EQ(bridge->Requests()->Get(7), nullptr);
    ASSERT_TRUE(bridge->Plain()->Get(7) && bridge->Responses()->Get(7));
    EXPECT_EQ(bridge->Responses()->Get(7)->id, 7u);
    EXPECT_STREQ(bridge->Responses()->Get(7)->name, "X.RESP");
    bridge->Responses()->Remove(7);
    bridge->Requests()->Put(8, new HeardHalf);
    bridge->Requests()->RemoveEach();
    Symbol<void (*)()>(core, "_ZN5Quern5IBase7ReleaseEv")();
    EXPECT_EQ(g_heard, "X.RESP7 0 7 ");
}

// A module that stands where the core plugin stood and switches every setting on.
struct AllOn final : ModuleBase, SettingsService, Settings {
    const char* Name() const override { return "OrvaneCore"; }
    const char* PluginName() const override { return "OrvaneCore"; }
    const char* Version() const override { return "1"; }
    void First(Registrar*) override { g_heard += "first "; }
    void Second() override { g_heard += "second "; }
    void Third() override { g_heard += "third "; }
    void Fourth() override { g_heard += "fourth "; }
    ServiceRoot* Service(const char* name) override {
        return strcmp(name, "REMOTECONFIG") == 0 ? this : core->Service(name);
    }
    Settings* Of(ModuleBase*) override { return this; }
    int Int(const char*, int otherwise) override { return otherwise; }
    long long Long(const char*, long long otherwise) override { return otherwise; }
    double Double(const char*, double otherwise) override { return otherwise; }
    bool Bool(const char*, bool) override { return true; }

    Module* core = nullptr;
};

AllOn g_allOn;

void* EnterAllOn(orvane_object*, const char*, void* const*) {
    g_allOn.core = FindHost()->Find("OrvaneCore");
    return FindHost()->Enter(&g_allOn) ? &g_allOn : nullptr;
}

TEST(BinaryContract, TheHostIsDrivenAndTheDataPluginAskedByTheirSlots) {
    const Container container;
    void* core = Load(CORE_LIBRARY);
    Load(SIBLING_LIBRARY);
    // During the launch, behind the core plugin's own installation and before a setting is read.
    constexpr char kLaunch[] = "application:didFinishLaunchingWithOptions:";
    orvane_class* observerClass = orvane_class_allocate("Observer");
    orvane_class_add_protocol(observerClass, "OrvaneAppLifecycleObserver");
    orvane_class_add_method(observerClass, kLaunch, EnterAllOn);
    orvane_object observer = {observerClass, nullptr};
    auto* lifecycle = Get<orvane_object>("OrvaneAppLifecycle", "sharedInstance");
    Perform(lifecycle, "addObserver:", &observer);
    Perform(lifecycle, kLaunch);
    EXPECT_EQ(g_heard, "first second ");
    char device[33] = "";
    EXPECT_TRUE(Symbol<bool (*)(char*, int)>(core, "Quern_system_GetUUID")(device, sizeof device));
    EXPECT_STREQ(device, "the UUID");

    Host* host = FindHost();
    g_heard.clear();
    host->WalkThird();
    host->WalkFourth();
    host->WalkFirst();
    host->WalkSecond();
    EXPECT_EQ(g_heard, "third fourth first second ");
    EXPECT_EQ(host->Find("OrvaneCore"), &g_allOn);
    EXPECT_TRUE(host->Remove(&g_allOn));
    EXPECT_EQ(host->Find("OrvaneCore"), nullptr);
    EXPECT_EQ(host->Registry()->size(), 3u);
    EXPECT_TRUE(host->RemoveNamed("PELL"));
    EXPECT_EQ(host->Registry()->count("PELL"), 0u);
    EXPECT_STREQ(host->Names()[0], "OrvaneCore") << "as the last second walk found them";
}

TEST(BinaryContract, ASiblingLivesThroughTheWholeLifecycle) {
    const Container container;
    orvane_class* delegateClass = orvane_class_allocate("AppDelegate");
    orvane_class_add_method(delegateClass, "application:didFinishLaunchingWithOptions:", Launched);
    orvane_class_register(delegateClass);
    orvane_object delegate = {delegateClass, nullptr};

    void* core = Load(CORE_LIBRARY);
    void* sibling = Load(SIBLING_LIBRARY);
    const auto journal = Symbol<const char* (*)()>(sibling, "sibling_journal");
    EXPECT_STREQ(journal(), "entered Sibling\nentered PELL\nentered RAVEL\n");

    EXPECT_EQ(Perform(&delegate, "application:didFinishLaunchingWithOptions:"), reinterpret_cast<void*>(1));
    EXPECT_EQ(g_heard, "delegate launched\n");
    auto* host = Get<orvane_object>("PluginUtils", "sharedInstance");
    Perform(host, "nativePreShutdown");
    Perform(host, "nativeShutdown");

    const std::string openId(128, 'o');
    const std::string account = " number 100000=42\n text 110002=" + openId + "\n";
    EXPECT_EQ(journal(),
              "entered Sibling\nentered PELL\nentered RAVEL\n"
              "first 110\n"
              "event 2000 OrvaneSDK_Versions\n number 100001=3\n number 100002=0\n" +
                  account +
                  " named OrvaneCore=1.5.11.2664\n named PELL=0.9\n named RAVEL=0.8\n"
                  "second\n"
                  " name OrvaneCore\n name PELL\n name RAVEL\n name Sibling\n"
                  " entry OrvaneCore=OrvaneCore 1.5.11.2664 COREREPORT YARROW REMOTECONFIG CONFIGFILE\n"
                  " entry PELL=PELL 0.9 REPORT\n"
                  " entry RAVEL=RAVEL 0.8\n"
                  " entry Sibling=Sibling 2.5 S1 S2\n"
                  " service COREREPORT of OrvaneCore\n"
                  "event 55 FromSibling\n number 100001=2\n number 100002=0\n" +
                  account +
                  " named k=val\n send\n unmake\n"
                  " service LOG of OrvaneCore version 1\n"
                  " threshold 2\n"
                  " line 3| above\n"
                  "second done\n"
                  " named Sibling=2.5\n send\n unmake\n"
                  "third\nfourth\n");
    EXPECT_TRUE(std::filesystem::exists(container.home + "/Library/Caches/OrvaneSDKLog/Sibling"));

    // The host's own way down, by the names that the product exports.
    static int quits = 0;
    const auto add = Symbol<void (*)(void (*)())>(core, "_Z26AddApplicationQuitCallbackPFvvE");
    const auto release = Symbol<void (*)()>(core, "_ZN5Quern5IBase7ReleaseEv");
    ASSERT_TRUE(add && release);
    add([] { ++quits; });
    release();
    release();
    EXPECT_EQ(quits, 1);
}

}  // namespace
