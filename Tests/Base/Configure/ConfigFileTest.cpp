// What each operation does to the file: ConfigContractTest, through the interface's slots.
#include "Base/Configure/ConfigFile.h"

#include <barrier>

#include "Base/Configure/RemoteConfig.h"
#include "Orvane/OrvaneCore.h"
#include "PluginManager/InnerPlugin/ConfigFileService.h"
#include "Storage/Bundle/BundleFactory.h"
#include "Support/FakeInfoDictionary.h"
#include "Support/Test.h"

namespace {

using Orvane::ConfigFile;
using Orvane::IConfigFile;

class ConfigFileTest : public testing::Test {
protected:
    ConfigFileTest() {
        manifest.Set("Orvane", "GameId", manifest.Text("game"));  // or the console tells that there are none
        manifest.Set("s", "preset", manifest.Text("else"));
    }
    OrvaneTest::FakeInfoDictionary manifest;
    OrvaneTest::CapturedConsole console;
};

TEST_F(ConfigFileTest, ATextIsCutAtTheBuffersEnd) {
    ConfigFile file("game");
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
        {"preset", 4, "x", false, "els.~~~~", 3},  {"none", 4, "last", false, "las.~~~~", 3},
        {"none", 8, nullptr, true, "........", 0}, {"k", 0, "x", false, "~~~~~~~~", 0},
        {"k", -1, "x", false, "~~~~~~~~", -1},
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
    EXPECT_FALSE(file.SetCache("s", "k", static_cast<const char*>(nullptr)));
    EXPECT_THAT(console.Take(), ElementsAre("Error value is null"));
}

TEST_F(ConfigFileTest, WithoutABundleEverythingFailsWithALine) {
    ConfigFile file(nullptr, "");
    char buffer[8] = "~~~~~~~";
    int length = 8;
    for (const bool result :
         {file.SetCache("s", "k", 1), file.SetCache("s", "k", 1LL), file.SetCache("s", "k", "1"),
          file.SetCache("s", "k", true), file.SetAndSave("s", "k", 1), file.SetAndSave("s", "k", 1LL),
          file.SetAndSave("s", "k", "1"), file.SetAndSave("s", "k", true), file.RemoveValueForKey("s", "k"),
          file.RemoveSection("s"), file.RemoveAll(), file.SaveCacheToFile(), file.RemoveValueForKeyAndSave("s", "k"),
          file.RemoveSectionAndSave("s"), file.RemoveAllAndSave(), file.IsContainKey("s", "k"),
          file.GetFromCache("s", "k", buffer, length, "else")})
        EXPECT_FALSE(result);
    EXPECT_EQ(std::string(buffer) + std::to_string(length), "else4");
    EXPECT_EQ(file.GetFromCache("s", "k", 7) + file.GetFromCache("s", "k", 1LL), 8);
    EXPECT_TRUE(file.GetFromCache("s", "k", true));
    EXPECT_EQ(console.Take(), std::vector<std::string>(20, "Error _bundle is null"));
}

TEST_F(ConfigFileTest, OneStoreANameAndTheDefaultOneStays) {
    IConfigFile* const standard = OrvaneCore_GetDefaultHandler();
    console.Take();
    IConfigFile* named = OrvaneCore_NewConfigFile("Orvane");
    EXPECT_THAT(console.Take(), ElementsAre("Info using Orvane.config"));
    EXPECT_TRUE(named->SetAndSave("s", "k", "v"));
    OrvaneCore_DeleteConfigFile(&named);
    OrvaneCore_DeleteConfigFile(&named);
    OrvaneCore_DeleteConfigFile(nullptr);
    IConfigFile* copy = standard;
    Orvane::ConfigFileSerivce::GetInstance()->DeleteConfigFile(&copy);
    EXPECT_EQ(copy, nullptr);
    EXPECT_TRUE(standard->IsContainKey("s", "k")) << "neither the object nor its store is gone";
    EXPECT_TRUE(Quern::BundleFactory::GetInstance()->GetDefaultBundle()->IsContainKey("s", "k"));

    IConfigFile* first = OrvaneCore_NewConfigFile("pair");
    static auto* const second = new ConfigFile("pair");  // left behind: its store goes with the first one
    EXPECT_TRUE(first->SetCache("s", "k", 8));
    EXPECT_EQ(second->GetFromCache("s", "k", 0), 8);
    OrvaneCore_DeleteConfigFile(&first);
    EXPECT_EQ(OrvaneTest::ReadFile(OrvaneTest::CacheFolder() + "/pair.config"), "\n[s]\nk=8\n");
}

TEST(FirstUse, ByManyThreadsGivesAllTheSameObjects) {
    OrvaneTest::CapturedConsole console;
    constexpr int kThreads = 8;
    std::barrier together(kThreads);
    const void* given[kThreads][3] = {};
    std::vector<std::jthread> threads;
    for (auto& mine : given)
        threads.emplace_back([&together, &mine] {
            together.arrive_and_wait();
            mine[0] = Quern::BundleFactory::GetInstance()->GetDefaultBundle();
            together.arrive_and_wait();
            mine[1] = ConfigFile::GetDefaultInstance();
            together.arrive_and_wait();
            mine[2] = Orvane::GetOrvaneRemoteConfig();
        });
    threads.clear();
    for (const auto& mine : given)
        EXPECT_TRUE(std::equal(mine, mine + 3, given[0]) && mine[0] && mine[1] && mine[2]);
    EXPECT_TRUE(ConfigFile::GetDefaultInstance()->SetAndSave("s", "k", 1)) << "the losers took no bundle along";
}

}  // namespace
