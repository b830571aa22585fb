#include "Base/Configure/RemoteConfig.h"

#include <gmock/gmock.h>

#include "Base/Configure/StringIterator.h"
#include "Orvane/OrvaneCore.h"
#include "Storage/Bundle/BundleFactory.h"
#include "Support/CapturedConsole.h"
#include "Support/FakeConfigure.h"
#include "Support/FakeInfoDictionary.h"
#include "Support/TestContainer.h"

namespace {

using Orvane::IRemoteConfig;
using Orvane::RemoteConfig;
using Orvane::StringIterator;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

struct Heard final : Orvane::RemoteConfigObserver {
    void OnRemoteConfigRefreshed(IRemoteConfig* config, Orvane::IStringIterator* keys) override {
        from = config;
        text += "|";
        while (!keys->IsEnd())
            text += std::string(keys->Next()) + " ";
        EXPECT_EQ(keys->Next(), nullptr);
        if (action) action(config);
    }
    IRemoteConfig* from = nullptr;
    std::string text;
    std::function<void(IRemoteConfig*)> action;
};

class RemoteConfigTest : public testing::Test {
protected:
    // As the client does behind an answer.
    void Refresh(const char* module, std::initializer_list<const char*> keys) {
        StringIterator iterator;
        for (const char* key : keys)
            iterator.Push(key);
        ASSERT_TRUE(configure.observers.count(module)) << module;
        configure.observers[module]->OnConfigureRefreshed(&iterator);
    }

    OrvaneTest::FakeConfigure configure;
    OrvaneTest::CapturedConsole console;
    RemoteConfig config{"Upload"};
};

TEST_F(RemoteConfigTest, ReadsItsModuleAndGivesTheDefaultForANullKey) {
    configure.Set("Upload", "n", "5000000000");
    configure.Set("Upload", "d", "0.25");
    configure.Set("Upload", "b", "true");
    configure.Set("Other", "x", "1");
    EXPECT_EQ(config.GetLong("n", 1), 5000000000);
    EXPECT_EQ(config.GetDouble("d", 1), 0.25);
    EXPECT_TRUE(config.GetBool("b", false));
    EXPECT_EQ(config.GetInt("x", 7), 7);
    EXPECT_THAT(console.Take(), IsEmpty());
    EXPECT_EQ(config.GetInt(nullptr, 7), 7);
    EXPECT_EQ(config.GetLong(nullptr, 1LL << 40), 1LL << 40);
    EXPECT_EQ(config.GetDouble(nullptr, 0.5), 0.5);
    EXPECT_TRUE(config.GetBool(nullptr, true));
    EXPECT_THAT(console.Take(),
                ElementsAre("Error key is NULL", "Error key is NULL", "Error key is NULL", "Error key is NULL"));
}

TEST_F(RemoteConfigTest, ATextFitsWithItsTerminatorOrNothingIsCopied) {
    configure.Set("Upload", "k", "four");
    const struct {
        const char* key;
        int length;
        const char* defaultValue;
        bool isGiven;
        const char* bytes;  // of the buffer's eight, "~" where it is untouched, "." for a zero
        int lengthAfter;
    } kCases[] = {
        {"k", 8, "x", true, "four....", 4},       {"k", 5, "x", true, "four.~~~", 4},
        {"k", 4, "x", false, "~~~~~~~~", 4},      {"k", 1, "x", false, "~~~~~~~~", 1},
        {"none", 8, "else", true, "else....", 4}, {"none", 4, "else", false, "~~~~~~~~", 4},
        {"none", 1, "", true, ".~~~~~~~", 0},     {"none", 8, nullptr, true, "........", 0},
    };
    for (const auto& one : kCases) {
        SCOPED_TRACE(testing::Message() << one.key << " " << one.length);
        std::string buffer(8, '~');
        int length = one.length;
        EXPECT_EQ(config.GetString(one.key, buffer.data(), length, one.defaultValue), one.isGiven);
        std::replace(buffer.begin(), buffer.end(), '\0', '.');
        EXPECT_EQ(buffer, one.bytes);
        EXPECT_EQ(length, one.lengthAfter);
    }
    EXPECT_THAT(console.Take(), IsEmpty());
    char buffer[2] = "~";
    int one = 1, none = 0, negative = -1;
    EXPECT_FALSE(config.GetString(nullptr, buffer, one, "x"));
    EXPECT_FALSE(config.GetString("k", nullptr, one, "x"));
    EXPECT_FALSE(config.GetString("k", buffer, none, "x"));
    EXPECT_FALSE(config.GetString("k", buffer, negative, "x"));
    EXPECT_STREQ(buffer, "~");
    EXPECT_EQ(console.Take(), std::vector<std::string>(4, "Error key == NULL || value == NULL || size <=0"));
}

TEST_F(RemoteConfigTest, OnlyTheFirstObserverHearsAndAlsoPastItsRemoval) {
    Heard first, second;
    config.AddObserver(&first);
    config.AddObserver(&second);
    EXPECT_THAT(console.Take(), IsEmpty());
    config.AddObserver(&second);
    EXPECT_THAT(console.Take(), ElementsAre("Warning observer already add before"));
    EXPECT_THAT(configure.added, ElementsAre("Upload", "Upload"));

    Heard late;
    first.action = [&](IRemoteConfig* asked) {  // no lock is held that this would want
        asked->AddObserver(&late);
        asked->RemoveObserver(&second);
    };
    Refresh("Upload", {"a", "b"});
    EXPECT_EQ(first.text, "|a b ");
    EXPECT_EQ(first.from, &config);
    EXPECT_EQ(second.text + late.text, "");

    config.RemoveObserver(&first);
    config.RemoveObserver(&first);
    Refresh("Upload", {});
    EXPECT_EQ(first.text, "|a b |");
    config.AddObserver(&first);  // is new again, and takes no place
    Refresh("Upload", {"c"});
    EXPECT_EQ(first.text, "|a b ||c ");

    RemoteConfig empty("Empty");
    empty.AddObserver(nullptr);
    empty.AddObserver(&second);
    Refresh("Empty", {"x"});
    EXPECT_EQ(second.text, "");
}

TEST_F(RemoteConfigTest, TellsTheUserAndFetches) {
    OrvaneTest::CacheFolder();
    config.SetUserInfo(-7, "someone");
    EXPECT_THAT(console.Take(), Contains("Info module Upload SetUserInfo channelid -7, openid someone"));
    Quern::Bundle* const bundle = Quern::BundleFactory::GetInstance()->GetDefaultBundle();
    EXPECT_STREQ(bundle->Get("OrvaneCore", "channelid", "").c_str(), "-7");
    EXPECT_STREQ(bundle->Get("OrvaneCore", "openid", "").c_str(), "someone");
    config.SetUserInfo(8, nullptr);
    EXPECT_STREQ(bundle->Get("OrvaneCore", "openid", "none").c_str(), "none");
    console.Take();
    config.Fetch();
    EXPECT_THAT(console.Take(), ElementsAre("Info module Upload Fetch"));
    EXPECT_EQ(configure.starts, 1);
    config.SetOption("x", 1);
    config.SetOption("x", "y");
    EXPECT_THAT(console.Take(), IsEmpty());
}

std::vector<std::string> g_told;

TEST_F(RemoteConfigTest, TheScriptLayerReadsTheGamesModule) {
    OrvaneTest::FakeInfoDictionary manifest;
    manifest.Set("Orvane", "GameId", manifest.Text("game7"));
    configure.Set("game7", "n", "9");
    EXPECT_EQ(quern_remoteconfig_GetInt("n", 1), 9);
    EXPECT_EQ(quern_remoteconfig_GetLong(nullptr, 1LL << 40), 1LL << 40);
    char buffer[4] = "~";
    EXPECT_TRUE(quern_remoteconfig_GetString("n", buffer, 4, ""));
    EXPECT_STREQ(buffer, "9");

    quern_remoteconfig_SetCallback(nullptr);
    console.Take();
    Refresh("game7", {"n"});
    EXPECT_THAT(console.Take(), ElementsAre("Info OnRemoteConfigRefreshed, g_callback is null."));
    quern_remoteconfig_SetCallback([](const char* keys) { g_told.push_back(std::string("old ") + keys); });
    quern_remoteconfig_SetCallback([](const char* keys) { g_told.push_back(keys); });
    EXPECT_THAT(configure.added, ElementsAre("game7", "game7", "game7"));
    Refresh("game7", {"n", "\"\xc3\xa9/"});
    EXPECT_THAT(console.Take(),
                ElementsAre("Info OnRemoteConfigRefreshed, g_callback with {\"KeyList\":[\"n\",\"\\\"\\u00e9/\"]}\n."));
    Refresh("game7", {});
    EXPECT_THAT(g_told, ElementsAre("{\"KeyList\":[\"n\",\"\\\"\\u00e9/\"]}\n", "{\"KeyList\":[]}\n"));
    EXPECT_EQ(Orvane::GetOrvaneRemoteConfig(), Orvane::GetOrvaneRemoteConfig());
}

}  // namespace
