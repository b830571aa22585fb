// Runs orvane-store as a developer does.
#include <sys/file.h>

#include "Storage/Bundle/BundleImpl.h"
#include "Support/Process.h"
#include "Support/Test.h"

namespace EndToEnd {
namespace {

using namespace OrvaneTest;
using Quern::BundleImpl;

// Not in the container of this test: the tool is to find it.
Outcome RunStore(std::vector<std::string> words, const std::string& home = "/nowhere") {
    words.insert(words.begin(), ORVANE_STORE_PROGRAM);
    return RunToEnd({words, {{"ORVANE_HOME", home}}, ""});
}

class StoreTool : public testing::Test {
protected:
    StoreTool() {
        BundleImpl& bundle = Open(path);
        bundle.SetCache("game", "name", "Sun Wukong");
        bundle.SetCache("game", "count", 7);
        bundle.Set("other", "key", "x");
    }
    // Left alone: deleting it would write plain text.
    static BundleImpl& Open(const std::string& path) {
        static auto* const bundles = new std::vector<BundleImpl*>;
        return *bundles->emplace_back(new BundleImpl(path.c_str()));
    }
    const std::string path = CacheFolder() + "/game.config";
};

TEST_F(StoreTool, ReadsAndChangesNothing) {
    const std::string before = ReadFile(path);
    const std::vector<std::string> filesBefore = FilesIn(CacheFolder());
    EXPECT_EQ(RunStore({"get", path, "game", "name"}).output, "Sun Wukong\n");
    EXPECT_EQ(RunStore({"get", path, "game", "name", "--json"}).output, "{\n  \"value\" : \"Sun Wukong\"\n}\n");
    EXPECT_EQ(RunStore({"keys", path, "game"}).output, "name\ncount\n");
    EXPECT_EQ(RunStore({"keys", path}).output, "game\nother\n");
    EXPECT_EQ(RunStore({"dump", path}).output, "[game]\nname=Sun Wukong\ncount=7\n[other]\nkey=x\n");
    EXPECT_THAT(RunStore({"dump", path, "--json"}).output, HasSubstr("\"count\" : \"7\""));
    EXPECT_EQ(RunStore({"verify", path}).output, "form: encrypted\nhead: ok\nmd5: ok\ndecryption: ok\n");
    EXPECT_EQ(RunStore({"get", path, "game", "missing"}).status, 1);
    EXPECT_EQ(RunStore({"keys", path, "missing"}).status, 1);
    EXPECT_EQ(ReadFile(path), before);
    EXPECT_EQ(FilesIn(CacheFolder()), filesBefore);
}

TEST_F(StoreTool, TakesTheKeyThatItIsGiven) {
    const std::string copy = CacheFolder() + "/../../elsewhere.config";  // a file pulled off a device
    WriteFile(copy, ReadFile(path));
    EXPECT_EQ(RunStore({"get", copy, "game", "count"}).status, 3);
    EXPECT_EQ(RunStore({"get", copy, "game", "count", "--private-key", ORVANE_KEY_FILE}).output, "7\n");
    EXPECT_EQ(RunStore({"get", copy, "game", "count", "--key", std::string(32, '0')}).status, 3);
    EXPECT_THAT(RunStore({"verify", copy, "--key", std::string(32, '0')}).output,
                HasSubstr("decryption: the key of --key does not open the body"));
    std::filesystem::rename(copy, CacheFolder() + "/../game.config");
    EXPECT_EQ(RunStore({"get", CacheFolder() + "/../game.config", "game", "count", "--home", CacheFolder() + "/../.."})
                  .output,
              "7\n");
    EXPECT_EQ(RunStore({"get", path, "game", "count", "--home", "/nowhere"}).status, 3);
    EXPECT_FALSE(std::filesystem::exists("/nowhere"));
}

TEST_F(StoreTool, AnEditedFileIsStillReadByItsApplication) {
    ASSERT_EQ(RunStore({"set", path, "game", "count", "8"}).status, 0);
    ASSERT_EQ(RunStore({"set", path, "new", "key", "value"}).status, 0);
    BundleImpl bundle(path.c_str());
    EXPECT_EQ(bundle.Get("game", "count", 0), 8);
    EXPECT_STREQ(bundle.Get("new", "key", "").c_str(), "value");
    EXPECT_EQ(RunStore({"set", path, "s", "k", "two\nlines"}).status, 2);
    EXPECT_EQ(RunStore({"set", path, "s", "k=", "never read back"}).status, 2);
    EXPECT_EQ(RunStore({"get", path, "game", "count"}).output, "8\n");

    const std::string plain = CacheFolder() + "/plain.ini";
    WriteFile(plain, "[s]\r\na = 1 # note\nlast=1");
    chmod(plain.c_str(), 0640);
    EXPECT_EQ(RunStore({"get", plain, "s", "last"}).status, 1);  // as the library sees it
    EXPECT_EQ(RunStore({"set", plain, "s", "a", "2"}).status, 0);
    EXPECT_EQ(ReadFile(plain), "[s]\na =2# note\nlast=1\n");
    struct stat state {};
    ASSERT_EQ(stat(plain.c_str(), &state), 0);
    EXPECT_EQ(state.st_mode & 0777, 0640u);
    EXPECT_EQ(RunStore({"verify", plain}).output, "form: plain\n");

    const std::string link = CacheFolder() + "/link.ini";
    std::filesystem::create_symlink(plain, link);
    const bool isGiven = chown(plain.c_str(), 12345, 12345) == 0;  // only root may give it away
    EXPECT_EQ(RunStore({"set", link, "s", "a", "--", "-3"}).status, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(ReadFile(plain), "[s]\na =-3# note\nlast=1\n");
    ASSERT_EQ(stat(plain.c_str(), &state), 0);
    EXPECT_EQ(state.st_uid, isGiven ? 12345 : geteuid());
}

TEST_F(StoreTool, TakesOutWhatWasSet) {
    EXPECT_EQ(RunStore({"unset", path, "game", "count"}).status, 0);
    EXPECT_EQ(RunStore({"unset", path, "game", "count"}).status, 1);
    EXPECT_EQ(RunStore({"unset", path, "other"}).status, 0);
    EXPECT_EQ(RunStore({"dump", path, "--json"}).output,
              "{\n  \"game\" : \n  {\n    \"name\" : \"Sun Wukong\"\n  }\n}\n");

    const std::string plain = CacheFolder() + "/plain.ini";
    WriteFile(plain, "[s]\nabc=1\nab=2\n[t]\nab=3\n[s]\n ab = 4 # again\n");
    EXPECT_EQ(RunStore({"unset", plain, "s", "ab"}).status, 0);
    EXPECT_EQ(ReadFile(plain), "[s]\nabc=1\n[t]\nab=3\n[s]\n") << "all that a read would find, and nothing else";

    const std::string renamed = CacheFolder() + "/moved.config";
    std::filesystem::copy_file(path, renamed);
    EXPECT_EQ(RunStore({"get", renamed, "game", "name"}).status, 3);
    EXPECT_EQ(RunStore({"get", renamed, "game", "name", "--name", "game.config"}).output, "Sun Wukong\n");
}

TEST_F(StoreTool, ExplainsWhoAnswersARead) {
    const std::string answer = CacheFolder() + "/RemoteConfig.config", manifest = CacheFolder() + "/Info.plist";
    BundleImpl& stored = Open(answer);
    const char* const kStored[] = {"seven", "7", "true", "True",       "cut",  "4#5", "hash", "#",
                                   "empty", "",  "wide", "5000000000", "word", "no",  "real", "1.5"};
    for (size_t i = 0; i < std::size(kStored); i += 2)
        stored.Set("Demo", kStored[i], kStored[i + 1]);
    WriteFile(manifest,
              "<plist version=\"1.0\"><dict><key>Orvane</key><dict><key>GameId</key><string>Demo</string></dict>"
              "<key>OrvaneGame</key><dict><key>seven</key><integer>9</integer><key>empty</key><string>0.5</string>"
              "<key>flag</key><true/></dict></dict></plist>");
    const struct {
        const char *key, *defaultText, *type, *value, *from, *why;
    } kCases[] = {
        {"seven", "7", "int", "9", "manifest", "a stored int that equals the default counts as not there"},
        {"seven", "1", "int", "7", "server", ""},
        {"word", "0", "int", "0", "default",
         "\"no\" begins with no number; a stored int that equals the default "
         "counts as not there; the manifest has no such key"},
        {"wide", "", "int", "2147483647", "server", "5000000000 does not fit, so it is the nearest limit"},
        {"real", "", "int", "1", "server", "only the number in front of \".5\" counts"},
        {"hash", "3", "int", "3", "default",
         "what stands behind the \"#\" is cut off; an empty text counts as not "
         "there; the manifest has no such key"},
        {"seven", "7", "long", "7", "server", ""},
        {"empty", "3", "long", "0", "manifest", "the server's text is empty, which counts as not there"},
        {"hash", "3", "long", "3", "default",
         "what stands behind the \"#\" is cut off; an empty text gives the "
         "default, whatever the manifest has"},
        {"seven", "", "bool", "false", "server", "only the text \"true\" is true"},
        {"true", "", "bool", "true", "server", ""},
        {"flag", "", "bool", "true", "manifest", "the server has no such key"},
        {"none", "true", "bool", "true", "default", "the server has no such key; the manifest has no such key"},
        {"real", "", "double", "1.5", "server", ""},
        {"word", "0.25", "double", "0.25", "default", "\"no\" is no number"},
        {"empty", "3", "double", "0.5", "manifest", "the server's text is empty, which counts as not there"},
        {"cut", "", "string", "\"4\"", "server", "what stands behind the \"#\" is cut off"},
        {"flag", "x", "string", "\"x\"", "default",
         "the server has no such key; the manifest's value is a boolean, not a text"},
    };
    for (const auto& one : kCases) {
        const Outcome result =
            RunStore({"explain", answer, "Demo", one.key, "--default", one.defaultText, "--manifest", manifest});
        EXPECT_EQ(result.status, 0) << result.error;
        const std::string why = *one.why ? std::string(" (") + one.why + ")" : "";
        EXPECT_THAT(result.output,
                    HasSubstr(std::string("\n") + one.type + ": " + one.value + ", from the " + one.from + why + "\n"))
            << one.key;
    }
    const std::string home = CacheFolder() + "/../..";
    const Outcome whole = RunStore({"explain", "Demo", "seven", "--home", home, "--manifest", manifest, "--json"});
    EXPECT_THAT(whole.output,
                AllOf(HasSubstr("\"manifest\" : \"9, an integer\""), HasSubstr("\"manifest_section\" : \"OrvaneGame\""),
                      HasSubstr("\"server\" : \"7\""), HasSubstr("\"value\" : 7")));
    std::filesystem::remove(answer);
    const Outcome none = RunStore({"explain", "Demo", "seven", "--home", home});
    EXPECT_THAT(none.output, HasSubstr("server    nothing\nmanifest  nothing, in Demo\n"));
    EXPECT_THAT(none.error, AllOf(HasSubstr("no answer of the server is kept"), HasSubstr("no --manifest")));
    const Outcome own = RunStore({"explain", "Pell", "LogHoursLimit", "--home", home});
    EXPECT_THAT(own.output, AllOf(HasSubstr("int: 240, from the default"),
                                  HasSubstr("library   int, default \"240\", read once, at the launch\n")));
    EXPECT_EQ(RunStore({"explain", "Demo", "seven", "--home", home, "--manifest", "/nowhere"}).status, 2);
    EXPECT_EQ(RunStore({"explain", path, "Demo", "seven", "--home", "/nowhere"}).status, 3);
    EXPECT_THAT(RunStore({"explain", "Demo", "seven", "--manifest", manifest}, "here").error,
                HasSubstr("ORVANE_HOME is \"here\": no absolute path, so the library ignores it\n"));
    EXPECT_EQ(RunStore({"dump", path, "--default", "1"}).status, 2);
}

TEST_F(StoreTool, ReadsTheNewFileOfASaveThatWasCutShort) {
    const std::string old = ReadFile(path), next = CacheFolder() + "/.game.config.orvane-new";
    Open(path).Set("game", "count", 8);
    WriteFile(next, ReadFile(path));
    chmod(next.c_str(), 0600);
    WriteFile(path, old);
    const Outcome result = RunStore({"get", path, "game", "count"});
    EXPECT_EQ(result.output, "8\n");
    EXPECT_THAT(result.error, HasSubstr("a save was cut short"));
    const std::string whole = ReadFile(next);
    const int holder = open(next.c_str(), O_RDONLY);
    flock(holder, LOCK_EX);
    EXPECT_THAT(RunStore({"set", path, "game", "count", "9"}).error, HasSubstr("cannot be finished now"));
    close(holder);
    EXPECT_THAT(RunStore({"set", path, "game", "count", "9", "--private-key", ORVANE_KEY_FILE}).error,
                HasSubstr("a save was cut short"));
    EXPECT_EQ(ReadFile(next), whole);
    EXPECT_EQ(RunStore({"set", path, "game", "count", "9"}).status, 0);
    EXPECT_EQ(BundleImpl(path.c_str()).Get("game", "count", 0), 9);
}

TEST_F(StoreTool, CommandsNoTerminal) {
    const std::string plain = CacheFolder() + "/plain.ini", stored = "[s]\na=\x1b[2J\x9b\n";
    WriteFile(plain, stored);
    const auto onTerminal = [](const std::string& words) {
        return RunToEnd({{"script", "-qec", ORVANE_STORE_PROGRAM + words, "/dev/null"}, {}, ""}).output;
    };
    EXPECT_EQ(onTerminal(" dump " + plain), "[s]\r\na=\\x1B[2J\\x9B\r\n");
    EXPECT_EQ(onTerminal(" get " + plain + " s a"), "\\x1B[2J\\x9B\r\n");
    EXPECT_EQ(RunStore({"dump", plain}).output, stored);
}

TEST_F(StoreTool, SaysWhatIsWrong) {
    const std::string sound = ReadFile(path);
    for (const auto& [at, length, verdict] : std::vector<std::tuple<size_t, size_t, std::string>>{
             {2, 200, "head: the version is too old\nmd5: not looked at"},
             {0, 200, "form: encrypted\nhead: the magic is another\nmd5: not looked at"},
             {49, 50, "head: the head is cut short\nmd5: not looked at"},
             {99, 100, "head: ok\nmd5: the body is cut short"},
             {100, 200, "head: ok\nmd5: the digest does not agree with the body"}}) {
        std::string bytes = sound.substr(0, length);
        bytes[at] = static_cast<char>(bytes[at] == 0);
        WriteFile(path, bytes);
        const Outcome result = RunStore({"verify", path});
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(result.output, HasSubstr(verdict + "\ndecryption: not looked at\n"));
        EXPECT_EQ(RunStore({"get", path, "game", "name"}).status, 1);
        EXPECT_EQ(RunStore({"set", path, "game", "name", "x"}).status, 1);
        EXPECT_EQ(ReadFile(path), bytes);
    }
    const std::vector<std::string> kWrong[] = {{},
                                               {"get", path},
                                               {"what", path},
                                               {"dump", "/nowhere/file"},
                                               {"dump", path, "--key", "12"},
                                               {"explain", path, "s", "k", "--manifest", "/nowhere"}};
    for (const std::vector<std::string>& words : kWrong) {
        const Outcome result = RunStore(words);
        EXPECT_EQ(result.status, 2);
        EXPECT_NE(result.error, "");
        EXPECT_EQ(result.output, "");
    }
    EXPECT_EQ(RunStore({"dump", path, "--colour"}).error, "orvane-store: --colour: no such option; see --help\n");
    EXPECT_THAT(RunStore({"--help"}).output, HasSubstr("usage: orvane-store"));
}

}  // namespace
}  // namespace EndToEnd
