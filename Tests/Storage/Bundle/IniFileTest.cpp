#include "Storage/Bundle/IniFile.h"

#include "Support/Test.h"

namespace Quern {
namespace {

using namespace OrvaneTest;

class IniFileTest : public testing::Test {
protected:
    // A new object over a file of that content.
    IniFile& Open(const std::string& content) {
        _file.reset();
        WriteFile(path, content);
        _file.reset(IniFile::CreateIniFile(path.c_str()));
        return *_file;
    }
    std::string Saved() {
        _file->Save();
        return ReadFile(path);
    }

    const std::string path = CacheFolder() + "/store.ini";
    CapturedConsole console;

private:
    std::unique_ptr<IniFile> _file;
};

TEST_F(IniFileTest, ReadsTextsByTheRulesOfTheForm) {
    struct Case {
        const char *content, *section, *key;
        std::optional<std::string> value;
    };
    const Case cases[] = {
        {"[s]\na=1\n", "s", "a", "1"},
        {"[ s ]tail\n  a  =  1 2  \n", "s", "a", "1 2"},
        {"[s]\n\ta=1\n", "s", "a", {}},  // a tab is no blank
        {"[s]\na = 1 # note\n", "s", "a", "1"},
        {"[s]\na=p#q\n", "s", "a", "p"},
        {"[s]\na=#x\n", "s", "a", ""},
        {"[s]\na=   \n", "s", "a", ""},
        {"[s]\na=\n", "s", "a", {}},
        {"[s]\na=b=c\n", "s", "a", "b=c"},
        {"[s]\nxa=1\na=2\n", "s", "a", "2"},
        {"[s]\nb=a\na=2\n", "s", "a", "2"},  // the key in another's value
        {"[s]\na\na=2\n", "s", "a", "2"},
        {"[s]\na =1\n=2\n", "s", "", "2"},
        {"[s]\na =1\n", "s", "a ", {}},  // a key is trimmed, what is asked for is not
        {"[s]\na=b=c\n", "s", "a=b", {}},
        {"[s]\n#a=1\n", "s", "a", {}},
        {"[s]\n#a=1\n", "s", "#a", "1"},
        {"[s]\nA=1\n", "s", "a", {}},
        {"[S]\na=1\n", "s", "a", {}},
        {"[s]\nb=1\n[t]\na=2\n[s]\na=3\n", "s", "a", "3"},  // a repeated section
        {"[s]\na=\n[s]\na=3\n", "s", "a", {}},              // whose first line of the key has the say
        {"[s]\n[broken\na=1\n", "s", "a", {}},
        {"[s]\r\na=1\r\n", "s", "a", "1"},
        {"a=1\n[s]\n", "s", "a", {}},
        {"[s]\na=1", "s", "a", {}},  // a last line needs its newline
    };
    for (const Case& c : cases) {
        bool found = true;
        const AString value = Open(c.content).ReadString(c.section, c.key, "default", found);
        EXPECT_EQ(found, c.value.has_value()) << c.content;
        EXPECT_EQ(value.c_str(), c.value.value_or("default")) << c.content;
    }
}

TEST_F(IniFileTest, ReadsNumbersAsAStreamDoes) {
    struct Case {
        const char* text;
        int number;
        long long wide;
    };
    const Case cases[] = {
        {"12", 12, 12},
        {"-7x", -7, -7},
        {"+5 6", 5, 5},
        {"word", 0, 0},
        {"0x10", 0, 0},
        {"4294967296", 2147483647, 4294967296},
        {"-99999999999999999999", -2147483647 - 1, -9223372036854775807LL - 1},
        {"#only a comment", 99, 99},
        {"", 99, 99},
    };
    for (const Case& c : cases) {
        IniFile& file = Open("[s]\na=" + std::string(c.text) + "\n");
        EXPECT_EQ(file.ReadInt("s", "a", 99), c.number) << c.text;
        EXPECT_EQ(file.ReadLongLong("s", "a", 99), c.wide) << c.text;
    }
}

TEST_F(IniFileTest, WritesKeepTheTextAroundThem) {
    struct Case {
        const char *before, *section, *key, *value, *after;
    };
    const Case cases[] = {
        {"", "s", "a", "1", "\n[s]\na=1\n"},
        {"[s]\n  a = 1 # note\n", "s", "a", "2", "[s]\n  a =2# note\n"},
        {"[s]\na=\n", "s", "a", "2", "[s]\na=2\n"},
        {"[s]\na=1\n", "s", "a", "", "[s]\na=\n"},
        {"[s]\na=1\n", "s", "b", "2", "[s]\na=1\nb=2\n"},
        {"[s]\na=1\n[t]\nc=3\n", "s", "b", "2", "[s]\nb=2\na=1\n[t]\nc=3\n"},  // in front of the section's last line
        {"[s]\n[t]\n", "s", "b", "2", "b=2\n[s]\n[t]\n"},                      // which may be its own header
        {"[s]\na=1\n[s]\nb=2\n", "s", "b", "3", "[s]\nb=3\na=1\n[s]\nb=2\n"},  // the first section of the name alone
        {"[s]\na=1\n[t]\nc=3\n", "s", "[t]", "2", "[s]\n[t]=2\na=1\n[t]\nc=3\n"},  // a key that is a header
        {"[s]\n[t]\n", "s", "[x", "2", "[x=2\n[s]\n[t]\n"},
    };
    for (const Case& c : cases) {
        EXPECT_TRUE(Open(c.before).WriteString(c.section, c.key, c.value));
        EXPECT_EQ(Saved(), c.after) << c.before;
    }

    IniFile& file = Open("");
    file.WriteInt("s", "a", -1);
    file.WriteLongLong("t", "b", 1LL << 40);
    file.WriteInt("s", "c", 3);  // the empty line between sections is now the last of the first
    EXPECT_EQ(Saved(), "\n[s]\na=-1\nc=3\n\n[t]\nb=1099511627776\n");
    EXPECT_TRUE(file.RemoveAll());
    EXPECT_EQ(Saved(), "");
}

TEST_F(IniFileTest, KeysAreFoundInWhateverOrderTheyCame) {
    std::vector<int> numbers(2000);
    std::iota(numbers.begin(), numbers.end(), 0);
    std::shuffle(numbers.begin(), numbers.end(), std::mt19937(7));
    IniFile& file = Open("[s]\nlast=x\n[t]\n[u]\na=1\n[u]\na=2\nb=3\n");
    const auto key = [](int number) { return "k" + std::to_string(number); };
    for (const int number : numbers) {
        file.WriteString("s", (" " + key(number)).c_str(), "first");  // reads as the key without the blank
        file.WriteInt("s", key(number).c_str(), number);
    }
    for (const int number : numbers) {
        EXPECT_EQ(file.ReadInt("s", key(number).c_str(), -1), number);
        const bool isToGo = number % 100 == 0;
        EXPECT_EQ(isToGo && file.RemoveKey("s", (" " + key(number) + "=").c_str()), isToGo);
    }
    for (const int number : numbers)
        EXPECT_EQ(file.ReadInt("s", key(number).c_str(), -1), number % 100 == 0 ? -1 : number);
    EXPECT_STREQ(file.ReadString("s", "last", "").c_str(), "x");
    EXPECT_EQ(file.ReadInt("u", "a", 0) * 10 + file.ReadInt("u", "b", 0), 13);
    EXPECT_EQ(file.ReadInt("u", "none", -1), -1);
}

TEST_F(IniFileTest, KeysAndRemovalsGoByLines) {
    IniFile& file = Open("[s]\n b = 1\nnoise\n#a=2\n[t]\nabc=3\nab=4\n[s]\nz=5\n");
    AArray keys;
    file.GetAllKeys("s", &keys);
    ASSERT_EQ(keys.Count(), 2);
    EXPECT_STREQ(keys.CStringAtIndex(0), "b");
    EXPECT_STREQ(keys.CStringAtIndex(1), "#a");
    file.GetAllKeys("missing", &keys);
    EXPECT_EQ(keys.Count(), 2);

    EXPECT_TRUE(file.IsContainKey("s", "ab"));  // a line of a later section that begins so
    EXPECT_FALSE(file.IsContainKey("s", "b"));  // its line begins with a blank
    EXPECT_TRUE(file.IsContainKey("s", ""));
    EXPECT_FALSE(file.IsContainKey("missing", ""));

    EXPECT_TRUE(file.RemoveKey("s", "ab"));
    EXPECT_EQ(Saved(), "[s]\n b = 1\nnoise\n#a=2\n[t]\nab=4\n[s]\nz=5\n");
    EXPECT_FALSE(file.RemoveKey("t", "nothing"));
    EXPECT_TRUE(file.RemoveSection("s"));
    EXPECT_EQ(Saved(), "[t]\nab=4\n[s]\nz=5\n");
    EXPECT_FALSE(file.RemoveSection("missing"));
}

TEST_F(IniFileTest, NullNamesFindAndWriteNothing) {
    IniFile& file = Open("[s]\na=1\n");
    console.Take();
    bool found = true;
    EXPECT_STREQ(file.ReadString(nullptr, "a", "default", found).c_str(), "");
    EXPECT_FALSE(found);
    EXPECT_EQ(file.ReadInt("s", nullptr, 7), 7);
    EXPECT_THAT(console.Take(), ElementsAre("Error s == NULL || key == NULL", "Error s == NULL || key == NULL"));
    EXPECT_FALSE(file.WriteString(nullptr, "a", "2"));
    EXPECT_FALSE(file.WriteInt("s", nullptr, 2));
    file.GetAllKeys(nullptr, nullptr);
    EXPECT_FALSE(file.IsContainKey("s", nullptr) || file.RemoveKey(nullptr, "a") || file.RemoveSection(nullptr));
    EXPECT_EQ(Saved(), "[s]\na=1\n");
    EXPECT_DEATH(file.WriteString("s", "a", nullptr), "value != nullptr");
}

TEST_F(IniFileTest, AnObjectLoadsWhenMadeAndSavesWhenDeleted) {
    ASSERT_EQ(symlink("nowhere", path.c_str()), 0);  // cannot be opened, and so is removed
    {
        const std::unique_ptr<IniFile> file(IniFile::CreateIniFile(path.c_str()));
        EXPECT_THAT(console.Take(), ElementsAre(MatchesRegex("Info load config file cost [0-9]+ us")));
        EXPECT_THAT(FilesIn(CacheFolder()), IsEmpty());
        file->WriteString("s", "a", "1");
    }
    EXPECT_EQ(ReadFile(path), "\n[s]\na=1\n");

    const std::unique_ptr<IniFile> file(IniFile::CreateIniFile(path.c_str()));
    unlink(path.c_str());
    EXPECT_FALSE(file->Load());
    EXPECT_EQ(file->ReadInt("s", "a", 0), 1);  // what was in memory stays
    const std::unique_ptr<IniFile> nowhere(IniFile::CreateIniFile("/nowhere/store.ini"));
    EXPECT_TRUE(nowhere->Save());
}

}  // namespace
}  // namespace Quern
