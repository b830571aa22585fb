#include "Storage/Defaults/UserDefaults.h"

#include <json/value.h>

#include "PluginManager/InnerPlugin/CrashReportEntry.h"
#include "Storage/Defaults/Linux/DefaultsFile.h"
#include "Support/Test.h"

namespace {

namespace fs = std::filesystem;
using namespace OrvaneTest;

const std::string kPath = fs::path(CacheFolder()).parent_path() / "UserDefaults.json";

Json::Value Entry(const char* key, const char* value) {
    Json::Value entry;
    entry[key] = value;
    return entry;
}

TEST(UserDefaults, ALaunchAddsItsEntryToThoseOfOthersAndWritesOnce) {
    WriteFile(kPath, R"({"FennelSDKInfos":{"0123456789":"2.0"},"list":[1]})");
    Orvane::Plugin::registerFennel();
    const std::string kWhole =
        "{\n \"FennelSDKInfos\" : \n {\n  \"0123456789\" : \"2.0\",\n  \"4be17c90fd\" : \"1.5.11.2664\"\n },\n"
        " \"list\" : \n [\n  1\n ]\n}\n";
    EXPECT_TRUE(WaitFor([&] { return ReadFile(kPath) == kWhole; })) << ReadFile(kPath);

    Quern::UserDefaults& defaults = Quern::UserDefaults::Current();
    EXPECT_TRUE(defaults.Dictionary("list").isObject() && defaults.Dictionary("list").empty());
    EXPECT_EQ(defaults.Dictionary("FennelSDKInfos").size(), 2u);
    defaults.SetDictionary("FennelSDKInfos", defaults.Dictionary("FennelSDKInfos"));
    WriteFile(kPath, R"({"of another program":true,"list":{"other":"1"}})");  // in the same file
    defaults.SetDictionary("list", Entry("a", "b"));
    EXPECT_EQ(defaults.Dictionary("list"), Entry("a", "b"));
    // The other's stays, and what was written once is not written again.
    const std::string kNow =
        "{\n \"list\" : \n {\n  \"a\" : \"b\",\n  \"other\" : \"1\"\n },\n \"of another program\" : true\n}\n";
    EXPECT_TRUE(WaitFor([&] { return ReadFile(kPath) == kNow; })) << ReadFile(kPath);

    defaults.SetDictionary("FennelSDKInfos", Json::objectValue);
    Orvane::Plugin::registerFennel();
    EXPECT_TRUE(defaults.Dictionary("FennelSDKInfos").empty()) << "once a process";
}

// What cannot be read is left alone, and what is damaged is set aside; both read as empty.
TEST(UserDefaults, NothingIsLostOfAFileThatIsNoGood) {
    const CapturedConsole console;
    fs::create_directories(kPath);
    Quern::UserDefaults& defaults = Quern::UserDefaults::Current();
    EXPECT_TRUE(defaults.Dictionary("a").empty());
    defaults.SetDictionary("a", Entry("x", "1"));
    EXPECT_TRUE(WaitFor([&] { return console.Count("UserDefaults.json is no file") == 2; }));  // read, then written
    fs::remove(kPath);
    const std::string kDeep = "{\"a\":" + std::string(100000, '[');
    WriteFile(kPath, kDeep);
    fs::create_directories(kPath + ".unusable");  // it cannot be set aside, and so stays
    defaults.SetDictionary("a", Entry("x", "1 "));
    defaults.SetDictionary("a", Entry("x", "1"));
    EXPECT_TRUE(WaitFor([&] { return console.Count("UserDefaults.json.unusable cannot be written") >= 1; }));
    EXPECT_EQ(ReadFile(kPath), kDeep);
    fs::remove(kPath + ".unusable");
    // The next change brings along what could not be written.
    defaults.SetDictionary("b", Entry("y", "2"));
    EXPECT_TRUE(WaitFor([&] { return ReadFile(kPath).find("\"y\" : \"2\"") != std::string::npos; }));
    EXPECT_THAT(ReadFile(kPath), HasSubstr("\"x\" : \"1\""));
    EXPECT_EQ(ReadFile(kPath + ".unusable"), kDeep);
}

// Neither the file nor what a killed writer left beside one that is damaged.
TEST(UserDefaults, NoMoreIsReadThanDefaultsTake) {
    const CapturedConsole console;
    const std::string next = fs::path(kPath).parent_path() / ".UserDefaults.json.orvane-new";
    for (const size_t most = 4 << 20; const size_t size : {most, most + 1}) {
        std::string text = "{\"a\":{}}";
        text.resize(size, ' ');
        WriteFile(kPath, text);
        EXPECT_EQ(Quern::ReadDefaultsFile(kPath).size(), size == most ? 1u : 0u);
        WriteFile(next, text);
        WriteFile(kPath, "damaged");
        EXPECT_EQ(Quern::ReadDefaultsFile(kPath).size(), size == most ? 1u : 0u);
    }
}

}  // namespace
