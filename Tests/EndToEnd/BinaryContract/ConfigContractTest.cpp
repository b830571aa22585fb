// Calls every slot of the settings and of the files of settings, from declarations that share nothing with the product,
// with a server behind them.

#include "Product.h"
#include "Support/HttpServer.h"
#include "Support/Test.h"

namespace {

using OrvaneTest::WaitFor;

struct Mine final : Contract::IdleModule {
    const char* Name() const override { return "Mine"; }
    const char* Version() const override { return "1"; }
};

struct Listener final : Contract::SettingsListener {
    void Refreshed(Contract::Settings* settings, Contract::Keys* keys) override {
        std::string text = settings == expected ? "" : "STRANGER ";
        for (; !keys->AtEnd(); text += " ")
            text += keys->Next();
        last = text + (keys->Next() ? "MORE" : "");
        ++count;
    }
    Contract::Settings* expected = nullptr;
    std::string last;
    std::atomic<int> count{0};
};

template <typename Service>
Service* Find(const char* name) {
    return static_cast<Service*>(Contract::FindHost()->Find("OrvaneCore")->Service(name));
}

std::string About(const Contract::ServiceRoot* service) {
    return std::string(service->Name()) + " of " + service->PluginName();
}

std::atomic<int> g_scriptCalls{0};

TEST(BinaryContract, TheSettingsAreCalledByTheirSlots) {
    const Contract::Container container;
    OrvaneTest::HttpServer server([](const OrvaneTest::HttpRequest&) {
        return OrvaneTest::HttpAnswer("200 OK", R"({"ret":0,"err":"","biz_data":{"rule_id":1,"merged_cfg":{"":{"s":"x"},
            "Mine":{"int":-7,"long":5000000000,"double":"0.25","bool":"True","text":"four"}}}})");
    });
    void* const core = Contract::Load(CORE_LIBRARY);
    ASSERT_TRUE(core);
    Contract::Launch();
    auto* const service = Find<Contract::SettingsService>("REMOTECONFIG");
    auto* const versioned = Find<Contract::VersionedSettingsService>("REMOTECONFIGEX");
    ASSERT_TRUE(service && versioned);
    EXPECT_EQ(About(service) + ", " + About(versioned), "REMOTECONFIG of OrvaneCore, REMOTECONFIGEX of OrvaneCore");
    EXPECT_EQ(versioned->Version(), 1);
    Mine mine;
    Contract::Settings* const settings = service->Of(&mine);
    ASSERT_TRUE(settings);
    EXPECT_EQ(versioned->Of(&mine), settings);
    EXPECT_EQ(service->Of(nullptr), nullptr);

    Listener listener;
    listener.expected = settings;
    settings->Listen(&listener);
    Contract::Symbol<void (*)(void (*)(const char*))>(core, "quern_remoteconfig_SetCallback")([](const char* keys) {
        EXPECT_STREQ(keys, "{\"KeyList\":[\"s\"]}\n");
        ++g_scriptCalls;
    });
    Contract::Symbol<Contract::Facade* (*)()>(core, "orvanecore_getInstance")()->Server(
        ("http://127.0.0.1:" + std::to_string(server.Port())).c_str());
    ASSERT_TRUE(WaitFor([&] { return listener.count >= 1 && g_scriptCalls >= 1; }));
    EXPECT_EQ(listener.last, "bool double int long text ");
    EXPECT_EQ(settings->Int("int", 1), -7);
    EXPECT_EQ(settings->Long("long", 1), 5000000000LL);
    EXPECT_EQ(settings->Double("double", 1), 0.25);
    EXPECT_TRUE(settings->Bool("bool", false));
    char buffer[8] = "~~~~~~~";
    int size = 4;
    EXPECT_FALSE(settings->Text("text", buffer, size, ""));
    size = 8;
    EXPECT_TRUE(settings->Text("text", buffer, size, ""));
    EXPECT_STREQ(buffer, "four");
    EXPECT_EQ(size, 4);

    settings->Option("name", 1);
    settings->Option("name", "value");
    settings->User(99, "somebody");
    settings->Unlisten(&listener);  // hears on
    settings->Ask();
    // The launch's own request may have come before it.
    ASSERT_TRUE(WaitFor([&] {
        const std::string target = server.Requests().back().target;
        return target.find("%22cid%22%3A%2299%22") != std::string::npos &&
               target.find("%22oid%22%3A%22somebody%22") != std::string::npos && listener.count >= 2;
    }));
}

TEST(BinaryContract, TheFilesOfSettingsAreCalledByTheirSlots) {
    const Contract::Container container;
    ASSERT_TRUE(Contract::Load(CORE_LIBRARY));
    Contract::Launch();
    auto* const service = Find<Contract::FileService>("CONFIGFILE");
    ASSERT_TRUE(service);
    EXPECT_EQ(About(service), "CONFIGFILE of OrvaneCore");
    ASSERT_TRUE(service->Standard());
    EXPECT_EQ(service->Standard(), service->Standard());

    Contract::File* file = service->Make("mine");
    ASSERT_TRUE(file);
    const auto bytes = [&] { return OrvaneTest::ReadFile(container.home + "/Library/Caches/mine.config"); };
    std::string last = bytes();
    // Whether the file has changed since the last look: a save takes a new key, so the same text has other bytes.
    const auto isWritten = [&] { return std::exchange(last, bytes()) != last; };

    EXPECT_TRUE(file->Keep("s", "int", -7) && file->Keep("s", "long", 5000000000LL));
    EXPECT_TRUE(file->Keep("s", "text", "four") && file->Keep("s", "bool", true));
    EXPECT_FALSE(isWritten());
    EXPECT_TRUE(file->Write() && isWritten());
    EXPECT_EQ(file->Int("s", "int", 0), -7);
    EXPECT_EQ(file->Int("s", "bool", 0), 1);
    EXPECT_EQ(file->Long("s", "long", 0), 5000000000LL);
    char buffer[8] = "~~~~~~~";
    int size = 4;
    EXPECT_FALSE(file->Text("s", "text", buffer, size, ""));
    EXPECT_STREQ(buffer, "fou");
    EXPECT_EQ(size, 3);
    EXPECT_TRUE(file->Bool("s", "none", true));
    EXPECT_FALSE(file->Bool("s", "bool", true));

    EXPECT_TRUE(file->Drop("s", "int"));
    EXPECT_FALSE(file->Has("s", "int"));
    EXPECT_TRUE(file->Has("s", "long") && file->DropSection("s"));
    EXPECT_FALSE(file->Has("s", "long"));
    EXPECT_TRUE(file->Keep("t", "k", 1) && file->DropAll());
    EXPECT_FALSE(file->Has("t", "k") || isWritten());

    EXPECT_TRUE(file->WriteValue("s", "int", 1) && isWritten());
    EXPECT_TRUE(file->WriteValue("s", "long", 2LL) && isWritten());
    EXPECT_TRUE(file->WriteValue("s", "text", "three") && isWritten());
    EXPECT_TRUE(file->WriteValue("s", "bool", false) && isWritten());
    EXPECT_EQ(file->Int("s", "int", 0) + file->Long("s", "long", 0) + file->Long("s", "bool", 9), 3);
    EXPECT_TRUE(file->DropAndWrite("s", "int") && isWritten() && !file->Has("s", "int"));
    EXPECT_TRUE(file->DropSectionAndWrite("s") && isWritten() && !file->Has("s", "long"));
    EXPECT_TRUE(file->WriteValue("s", "k", "v") && file->DropAllAndWrite() && isWritten() && !file->Has("s", "k"));

    EXPECT_TRUE(file->Keep("s", "k", "v"));
    service->Unmake(&file);
    EXPECT_EQ(file, nullptr);
    EXPECT_EQ(bytes(), "\n[s]\nk=v\n") << "saved, as plain text";
    delete service->Make("mine");  // by its own slot
}

}  // namespace
