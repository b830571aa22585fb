// From what the server sends to what each read gives, through the client and its store: the table of
// Docs/RemoteConfig.md.
#include "Base/Configure/ConfigureImpl.h"
#include "Base/Configure/RemoteConfig.h"
#include "Support/FakeInfoDictionary.h"
#include "Support/Test.h"

namespace {

using OrvaneTest::FakeInfoDictionary;

std::string ReadAll(Orvane::RemoteConfig& config) {
    char text[32] = "refused";
    int length = sizeof text;
    config.GetString("k", text, length, "x");
    return OrvaneTest::Format("%d %lld %g %s %s", config.GetInt("k", 3), config.GetLong("k", 3),
                              config.GetDouble("k", 3.5), config.GetBool("k", true) ? "true" : "false", text);
}

TEST(TypedReads, AreWhatTheTableSays) {
    const OrvaneTest::CapturedConsole console;
    const std::string path = OrvaneTest::CacheFolder() + "/plain.ini";
    // Over a plain file, whose lines can be looked at; never destroyed, as no client is.
    static auto* const client = new Orvane::ConfigureImpl(std::make_unique<Quern::IniBundle>(
        std::unique_ptr<Quern::IniFile>(Quern::IniFile::CreateIniFile(path.c_str()))));
    Orvane::Configure::Use(client);
    Orvane::RemoteConfig config("Game");

    constexpr char kNothing[] = "-";
    const struct {
        std::vector<std::string> literals;
        const char* stored;  // behind "k=" in the file
        const char* bare;
        const char* overInteger;  // the manifest has 9
        const char* overText;     // the manifest has "0.5"
    } kCases[] = {
        {{"7", "\"7\"", "\"007\""}, "7", "7 7 7 false 7", nullptr, nullptr},
        {{"3"}, "3", "3 3 3 false 3", "9 3 3 false 3", nullptr},
        {{"-5000000000"}, "-5000000000", "-2147483648 -5000000000 -5e+09 false -5000000000", nullptr, nullptr},
        {{"18446744073709551615"}, "-1", "-1 -1 -1 false -1", nullptr, nullptr},
        {{"\"1.10\""}, "1.100000", "1 1 1.1 false 1.100000", nullptr, nullptr},
        {{"\"v1.10\""}, "v1.10", "0 0 3.5 false v1.10", nullptr, nullptr},
        {{"\"True\""}, "True", "0 0 3.5 true True", nullptr, nullptr},
        {{"\" a b \""}, " a b ", "0 0 3.5 false a b", nullptr, nullptr},
        {{"\"a,b\""}, "a,b", "0 0 3.5 false a,b", nullptr, nullptr},
        {{"\"4#5\""}, "4#5", "4 4 4 false 4", nullptr, nullptr},
        {{"\"#5\""}, "#5", "3 3 3.5 true ", "9 3 3.5 true ", nullptr},
        {{"\"\""}, "", "3 3 3.5 true x", "9 9 3.5 true x", "3 0 0.5 false 0.5"},
        {{"true", "1.0", "1e5", "null", "[1]", "{}"},
         kNothing,
         "3 3 3.5 true x",
         "9 9 3.5 true x",
         "3 0 0.5 false 0.5"},
    };
    for (const auto& one : kCases)
        for (const std::string& literal : one.literals) {
            SCOPED_TRACE(literal);
            const std::string answer =
                R"({"ret":0,"err":"","biz_data":{"rule_id":0,"merged_cfg":{"Game":{"k":)" + literal + "}}}}";
            client->OnDataTaskFinished(nullptr, Quern::kWWWErrorNone, 200, answer.data(), std::ssize(answer));
            const std::string line = "[Game]\nk=" + std::string(one.stored) + "\n";
            EXPECT_EQ(OrvaneTest::ReadFile(path).find(line) != std::string::npos, one.stored != kNothing);
            for (const auto& [preset, wanted] :
                 {std::pair(Quern::InfoValue(), one.bare), std::pair(FakeInfoDictionary::Integer(9), one.overInteger),
                  std::pair(FakeInfoDictionary::Text("0.5"), one.overText)}) {
                FakeInfoDictionary manifest;
                manifest.Set("Orvane", "GameId", manifest.Text("Game"));
                manifest.Set("OrvaneGame", "k", preset);
                EXPECT_EQ(ReadAll(config), wanted ? wanted : one.bare);
            }
        }
    Orvane::Configure::Use(nullptr);
}

}  // namespace
