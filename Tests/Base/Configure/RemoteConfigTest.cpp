// What is read from where: TypedReadsTest. The same through the interface's slots, with a server: ConfigContractTest.
#include "Base/Configure/RemoteConfig.h"

#include "Base/Configure/StringIterator.h"
#include "Base/QuernCommon.h"
#include "Orvane/OrvaneCore.h"
#include "Support/FakeConfigure.h"
#include "Support/FakeInfoDictionary.h"
#include "Support/Test.h"

namespace {

using Orvane::IRemoteConfig;
using Orvane::RemoteConfig;

struct Heard final : Orvane::RemoteConfigObserver {
    void OnRemoteConfigRefreshed(IRemoteConfig* config, Orvane::IStringIterator* keys) override {
        text += "|";
        while (!keys->IsEnd())
            text += std::string(keys->Next()) + " ";
        if (next) config->AddObserver(next);  // no lock is held that this would want
    }
    std::string text;
    RemoteConfigObserver* next = nullptr;
};

class RemoteConfigTest : public testing::Test {
protected:
    // As the client does behind an answer.
    void Refresh(const char* module, std::initializer_list<const char*> keys) {
        Orvane::StringIterator iterator;
        for (const char* key : keys)
            iterator.Push(key);
        ASSERT_TRUE(configure.observers.count(module)) << module;
        configure.observers[module]->OnConfigureRefreshed(&iterator);
    }
    OrvaneTest::FakeConfigure configure;
    OrvaneTest::CapturedConsole console;
    RemoteConfig config{"Upload"};
};

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
        {"k", 8, "x", true, "four....", 4},        {"k", 5, "x", true, "four.~~~", 4},
        {"k", 4, "x", false, "~~~~~~~~", 4},       {"none", 8, "else", true, "else....", 4},
        {"none", 4, "else", false, "~~~~~~~~", 4}, {"none", 1, nullptr, true, ".~~~~~~~", 0},
        {nullptr, 8, "x", false, "~~~~~~~~", 8},   {"k", 0, "x", false, "~~~~~~~~", 0},
        {"k", -1, "x", false, "~~~~~~~~", -1},
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
    EXPECT_EQ(console.Take(), std::vector<std::string>(3, "Error key == NULL || value == NULL || size <=0"));
    EXPECT_EQ(config.GetInt(nullptr, 7) + config.GetLong(nullptr, 1LL << 40), 7 + (1LL << 40));
    EXPECT_EQ(config.GetDouble(nullptr, 0.5), 0.5);
    EXPECT_TRUE(config.GetBool(nullptr, true));
    EXPECT_EQ(console.Take(), std::vector<std::string>(4, "Error key is NULL"));
}

TEST_F(RemoteConfigTest, OnlyTheFirstObserverHearsAndAlsoPastItsRemoval) {
    Heard first, second, late;
    first.next = &late;
    config.AddObserver(&first);
    config.AddObserver(&second);
    config.AddObserver(&second);
    EXPECT_THAT(console.Take(), ElementsAre("Warning observer already add before"));
    EXPECT_THAT(configure.added, ElementsAre("Upload", "Upload"));
    Refresh("Upload", {"a", "b"});
    config.RemoveObserver(&first);
    Refresh("Upload", {});
    config.AddObserver(&first);  // is new again, and takes no place
    EXPECT_THAT(configure.added, ElementsAre("Upload", "Upload", "Upload", "Upload"));  // one of them inside the first
    EXPECT_THAT(console.Take(), ElementsAre("Warning observer already add before"));    // inside the second refresh
    Refresh("Upload", {"c"});
    EXPECT_EQ(first.text, "|a b ||c ");

    RemoteConfig empty("Empty");
    empty.AddObserver(nullptr);
    empty.AddObserver(&second);
    Refresh("Empty", {"x"});
    EXPECT_EQ(second.text + late.text, "");
}

TEST_F(RemoteConfigTest, TellsTheUserAndFetches) {
    config.SetUserInfo(-7, nullptr);
    EXPECT_THAT(console.Take(), Contains("Info module Upload SetUserInfo channelid -7, openid "));
    EXPECT_STREQ(Quern::QuernCommon::GetInstance()->GetChannelID(), "-7");
    console.Take();
    config.Fetch();
    EXPECT_THAT(console.Take(), ElementsAre("Info module Upload Fetch"));
    EXPECT_EQ(configure.starts, 1);
}

std::string g_told;

TEST_F(RemoteConfigTest, TheScriptLayerHearsThroughTheLastCallback) {
    OrvaneTest::FakeInfoDictionary manifest;
    manifest.Set("Orvane", "GameId", manifest.Text("game7"));
    quern_remoteconfig_SetCallback(nullptr);
    Refresh("game7", {"n"});
    EXPECT_THAT(console.Take(), ElementsAre("Info OnRemoteConfigRefreshed, g_callback is null."));
    quern_remoteconfig_SetCallback([](const char* keys) { g_told += std::string("old ") + keys; });
    quern_remoteconfig_SetCallback([](const char* keys) { g_told += keys; });
    EXPECT_THAT(configure.added, ElementsAre("game7", "game7", "game7"));
    Refresh("game7", {"n", "\"\xc3\xa9/"});
    EXPECT_THAT(console.Take(),
                ElementsAre("Info OnRemoteConfigRefreshed, g_callback with {\"KeyList\":[\"n\",\"\\\"\\u00e9/\"]}\n."));
    Refresh("game7", {});
    EXPECT_EQ(g_told, "{\"KeyList\":[\"n\",\"\\\"\\u00e9/\"]}\n{\"KeyList\":[]}\n");
}

}  // namespace
