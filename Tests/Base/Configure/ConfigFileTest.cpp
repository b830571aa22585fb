#include "Base/Configure/ConfigFile.h"

#include <gmock/gmock.h>

#include "Orvane/OrvaneCore.h"
#include "PluginManager/InnerPlugin/ConfigFileService.h"
#include "Storage/Bundle/BundleFactory.h"
#include "Storage/Bundle/BundleImpl.h"
#include "Storage/File/PathSource.h"
#include "Support/CapturedConsole.h"
#include "Support/FakeInfoDictionary.h"
#include "Support/TestContainer.h"

namespace {

using Orvane::ConfigFile;
using Orvane::IConfigFile;
using OrvaneTest::CacheFolder;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

class ConfigFileTest : public testing::Test {
protected:
    const std::string folder = CacheFolder();
    OrvaneTest::CapturedConsole console;
    OrvaneTest::FakeInfoDictionary manifest;
};

// What is on the disk, in a second bundle's eyes.
std::string Stored(const std::string& name, const char* key) {
    static auto* const kept = new std::vector<Quern::BundleImpl*>;  // deleting one would save plain text
    kept->push_back(new Quern::BundleImpl((CacheFolder() + "/" + name + ".config").c_str()));
    return kept->back()->Get("s", key, "-").c_str();
}

TEST_F(ConfigFileTest, EveryOperationReachesItsBundleAndTheDiskIfItSaysSo) {
    ConfigFile file("game");
    EXPECT_THAT(console.Take(), Contains("Info using game.config"));
    EXPECT_TRUE(file.SetCache("s", "int", -5) && file.SetCache("s", "long", 5000000000LL));
    EXPECT_TRUE(file.SetCache("s", "text", "Sun Wukong") && file.SetCache("s", "bool", true));
    EXPECT_EQ(file.GetFromCache("s", "int", 0), -5);
    EXPECT_EQ(file.GetFromCache("s", "long", 0LL), 5000000000LL);
    EXPECT_FALSE(file.GetFromCache("s", "bool", true)) << "what was set as a bool reads as false";
    EXPECT_EQ(Stored("game", "text"), "-");
    EXPECT_TRUE(file.SaveCacheToFile());
    EXPECT_EQ(Stored("game", "text"), "Sun Wukong");
    EXPECT_TRUE(file.IsContainKey("s", "tex"));

    EXPECT_TRUE(file.RemoveValueForKey("s", "text"));
    EXPECT_FALSE(file.IsContainKey("s", "text"));
    EXPECT_EQ(Stored("game", "text"), "Sun Wukong");
    EXPECT_TRUE(file.RemoveValueForKeyAndSave("s", "bool"));
    EXPECT_EQ(Stored("game", "text") + Stored("game", "bool"), "--");
    EXPECT_FALSE(file.RemoveValueForKeyAndSave("s", "bool"));

    EXPECT_TRUE(file.SetAndSave("s", "a", 1) && file.SetAndSave("s", "b", 2LL));
    EXPECT_TRUE(file.SetAndSave("s", "c", "3") && file.SetAndSave("s", "d", false));
    EXPECT_EQ(Stored("game", "a") + Stored("game", "b") + Stored("game", "c") + Stored("game", "d"), "1230");
    EXPECT_TRUE(file.RemoveSection("s"));
    EXPECT_EQ(file.GetFromCache("s", "a", 0) + (Stored("game", "a") == "1"), 1);
    EXPECT_TRUE(file.SetCache("s", "e", 1) && file.RemoveSectionAndSave("s"));
    EXPECT_EQ(Stored("game", "a"), "-");
    EXPECT_TRUE(file.SetAndSave("s", "a", 1) && file.RemoveAll());
    EXPECT_EQ(file.GetFromCache("s", "a", 0) + (Stored("game", "a") == "1"), 1);
    EXPECT_TRUE(file.RemoveAllAndSave());
    EXPECT_EQ(Stored("game", "a"), "-");

    manifest.Set("s", "int", manifest.Integer(9));
    EXPECT_EQ(file.GetFromCache("s", "int", 0), 9);
    EXPECT_FALSE(file.IsContainKey("s", "int"));
    console.Take();
    EXPECT_FALSE(file.SetCache("s", "k", static_cast<const char*>(nullptr)));
    EXPECT_FALSE(file.SetAndSave("s", "k", static_cast<const char*>(nullptr)));
    EXPECT_THAT(console.Take(), ElementsAre("Error value is null", "Error value is null"));
    EXPECT_FALSE(file.SetCache(nullptr, "k", 1) || file.SetAndSave("s", nullptr, 1));
}

TEST_F(ConfigFileTest, ATextIsCutAtTheBuffersEnd) {
    ConfigFile file("game"), bare(nullptr, "");
    file.SetCache("s", "k", "four");
    const struct {
        const char* key;
        int length;
        const char* defaultValue;
        bool isWhole;
        const char* bytes;  // of the buffer's eight, "~" where it is untouched, "." for a zero
        int lengthAfter;
    } kCases[] = {
        {"k", 8, "x", true, "four....", 4},        {"k", 5, "x", true, "four.~~~", 4},
        {"k", 4, "x", false, "fou.~~~~", 3},       {"k", 1, "x", false, ".~~~~~~~", 0},
        {"none", 4, "else", false, "els.~~~~", 3}, {"none", 8, nullptr, true, "........", 0},
        {"k", 0, "x", false, "~~~~~~~~", 0},       {"k", -1, "x", false, "~~~~~~~~", -1},
    };
    for (const auto& one : kCases) {
        SCOPED_TRACE(testing::Message() << one.key << " " << one.length);
        console.Take();
        std::string buffer(8, '~');
        int length = one.length;
        EXPECT_EQ(file.GetFromCache("s", one.key, buffer.data(), length, one.defaultValue), one.isWhole);
        std::replace(buffer.begin(), buffer.end(), '\0', '.');
        EXPECT_EQ(buffer, one.bytes);
        EXPECT_EQ(length, one.lengthAfter);
        const std::string line = one.length <= 0 ? "Error len <= 0" : "Error cut string";
        EXPECT_EQ(console.Take(), std::vector<std::string>(one.isWhole ? 0 : 1, line));
    }
    int length = 4;
    EXPECT_FALSE(file.GetFromCache("s", "k", nullptr, length, ""));
    EXPECT_EQ(length, 4);
}

TEST_F(ConfigFileTest, WithoutABundleEverythingFailsWithALine) {
    ConfigFile file(nullptr, "");
    IConfigFile& bare = file;
    const auto said = [&](auto result, auto wanted) {
        return result == wanted && console.Take() == std::vector<std::string>{"Error _bundle is null"};
    };
    console.Take();
    EXPECT_TRUE(said(bare.SetCache("s", "k", 1), false) && said(bare.SetCache("s", "k", 1LL), false));
    EXPECT_TRUE(said(bare.SetCache("s", "k", "1"), false) && said(bare.SetCache("s", "k", true), false));
    EXPECT_TRUE(said(bare.SetAndSave("s", "k", 1), false) && said(bare.SetAndSave("s", "k", 1LL), false));
    EXPECT_TRUE(said(bare.SetAndSave("s", "k", "1"), false) && said(bare.SetAndSave("s", "k", true), false));
    EXPECT_TRUE(said(bare.RemoveValueForKey("s", "k"), false) && said(bare.RemoveSection("s"), false));
    EXPECT_TRUE(said(bare.RemoveAll(), false) && said(bare.SaveCacheToFile(), false));
    EXPECT_TRUE(said(bare.RemoveValueForKeyAndSave("s", "k"), false) && said(bare.RemoveSectionAndSave("s"), false));
    EXPECT_TRUE(said(bare.RemoveAllAndSave(), false) && said(bare.IsContainKey("s", "k"), false));
    EXPECT_TRUE(said(bare.GetFromCache("s", "k", 7), 7) && said(bare.GetFromCache("s", "k", 7LL), 7LL));
    EXPECT_TRUE(said(bare.GetFromCache("s", "k", true), true));
    char buffer[8] = "~~~~~~~";
    int length = 8;
    EXPECT_TRUE(said(bare.GetFromCache("s", "k", buffer, length, "else"), false));
    EXPECT_STREQ(buffer, "else");
    EXPECT_EQ(length, 4);
    length = 3;
    EXPECT_FALSE(bare.GetFromCache("s", "k", buffer, length, "else"));
    EXPECT_STREQ(buffer, "el");
    EXPECT_THAT(console.Take(), ElementsAre("Error _bundle is null", "Error cut string"));
}

TEST_F(ConfigFileTest, OneStoreANameAndTheDefaultOneStays) {
    IConfigFile* const standard = OrvaneCore_GetDefaultHandler();
    EXPECT_THAT(console.Take(), Contains("Info using Orvane.config"));
    EXPECT_EQ(Orvane::ConfigFileSerivce::GetInstance()->GetDefaultConfigFile(), standard);
    IConfigFile* named = OrvaneCore_NewConfigFile("Orvane");
    EXPECT_THAT(console.Take(), ElementsAre("Info using Orvane.config"));
    EXPECT_TRUE(named->SetAndSave("s", "k", "v"));
    OrvaneCore_DeleteConfigFile(&named);
    EXPECT_EQ(named, nullptr);
    OrvaneCore_DeleteConfigFile(&named);
    OrvaneCore_DeleteConfigFile(nullptr);
    IConfigFile* copy = standard;
    Orvane::ConfigFileSerivce::GetInstance()->DeleteConfigFile(&copy);
    EXPECT_EQ(copy, nullptr);
    EXPECT_TRUE(standard->IsContainKey("s", "k")) << "neither the object nor its bundle is gone";
    EXPECT_STREQ(Quern::BundleFactory::GetInstance()->GetDefaultBundle()->Get("s", "k", "").c_str(), "v");

    IConfigFile* first = Orvane::ConfigFileSerivce::GetInstance()->NewConfigFile("pair");
    static auto* const second = new ConfigFile("pair");  // left behind: its store goes with the first one
    EXPECT_TRUE(first->SetCache("s", "k", 8));
    EXPECT_EQ(second->GetFromCache("s", "k", 0), 8);
    OrvaneCore_DeleteConfigFile(&first);
    EXPECT_EQ(ConfigFile("pair").GetFromCache("s", "k", 0), 8) << "the deletion saved";

    std::vector<IConfigFile*> given(8);
    std::vector<std::thread> threads;
    for (IConfigFile*& one : given)
        threads.emplace_back([&one] { one = ConfigFile::GetDefaultInstance(); });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(given, std::vector<IConfigFile*>(8, standard));
}

TEST(ConfigFileDeathTest, WantsACacheFolder) {
    class NoPaths final : public Quern::PathSource {
        std::string Home() override { return {}; }
        std::string Documents() override { return {}; }
        std::string Caches() override { return {}; }
    };
    Quern::PathSource::Use(std::make_shared<NoPaths>());
    EXPECT_DEATH(ConfigFile("game"), testing::AllOf(HasSubstr("CachePath is empty, do not use bundle in JNI_ONLoad!!!"),
                                                    HasSubstr("false")));
}

}  // namespace
