// The manifest as it is found and read from real files. A process reads it once, so each case shows one file.
#include "Storage/Bundle/InfoDictionary.h"

#include <plist/plist.h>

#include "Orvane/InfoPlist.h"
#include "Storage/Bundle/Linux/PropertyList.h"
#include "Storage/Bundle/Linux/PropertyListShape.h"
#include "Storage/File/PathSource.h"
#include "Support/Test.h"

namespace {

using namespace OrvaneTest;
using Quern::InfoDictionary;
using Quern::InfoValue;

std::string Xml(const std::string& content) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist version=\"1.0\">\n" +
           content + "\n</plist>\n";
}

std::string Binary(const std::string& xml) {
    plist_t root = nullptr;
    plist_from_xml(xml.data(), static_cast<uint32_t>(xml.size()), &root);
    char* bytes = nullptr;
    uint32_t length = 0;
    plist_to_bin(root, &bytes, &length);
    std::string binary(bytes, length);
    plist_to_bin_free(bytes);
    plist_free(root);
    return binary;
}

const std::string kManifest =
    Xml("<dict><key>CFBundleIdentifier</key><string>com.example.game</string><key>Game</key>"
        "<!-- </dict> a remark --><dict><key>one</key><integer>1</integer><key>minus</key><integer>-2</integer>"
        "<key>pi</key><real>3.5</real><key>on</key><true/><key>off</key><false/><key>text</key>"
        "<string>a &lt;b&gt; &amp; caf\xC3\xA9 \xE6\xBC\xA2</string><key>raw</key><string><![CDATA[</dict>]]></string>"
        "<key>empty</key><string/><key>when</key><date>2020-01-01T00:00:00Z</date><key>bytes</key><data>AAEC</data>"
        "<key>list</key><array><string>x</string></array><key>inner</key><dict/></dict></dict>");

std::string BundleIdOf(const InfoValue& root) {
    const InfoValue* id = root.Find("CFBundleIdentifier");
    return id && id->Text() ? *id->Text() : "";
}

TEST(PropertyList, IsReadFromXmlAndBinaryAlike) {
    for (const std::string& bytes : {kManifest, Binary(kManifest)}) {
        InfoValue root;
        const char* why = nullptr;
        ASSERT_TRUE(Quern::ParsePropertyList(bytes, root, why)) << why;
        EXPECT_EQ(BundleIdOf(root), "com.example.game");
        const InfoValue* game = root.Find("Game");
        ASSERT_NE(game, nullptr);
        std::string keys;
        for (const auto& entry : std::get<InfoValue::Dictionary>(game->value))
            keys += entry.key + " ";
        EXPECT_EQ(keys, "one minus pi on off text raw empty when bytes list inner ");
        EXPECT_EQ(game->Find("minus")->LongLongValue(), -2);
        EXPECT_EQ(std::get<double>(game->Find("pi")->value), 3.5);
        EXPECT_TRUE(std::get<bool>(game->Find("on")->value));
        EXPECT_FALSE(std::get<bool>(game->Find("off")->value));
        EXPECT_EQ(*game->Find("text")->Text(), "a <b> & caf\xC3\xA9 \xE6\xBC\xA2");
        EXPECT_EQ(*game->Find("raw")->Text(), "</dict>");
        EXPECT_EQ(*game->Find("empty")->Text(), "");
        for (const char* valueless : {"when", "bytes", "list"})
            EXPECT_FALSE(game->Find(valueless)->IsConvertible() || game->Find(valueless)->IsDictionary()) << valueless;
        EXPECT_TRUE(game->Find("inner")->IsDictionary());
    }
}

// A binary list of `levels` lists, each of which holds the next one twice, around a number.
std::string Doubling(int levels) {
    std::string bytes = "bplist00", offsets;
    for (int level = 0; level < levels; ++level) {
        offsets += static_cast<char>(bytes.size());
        bytes += {'\xA2', static_cast<char>(level + 1), static_cast<char>(level + 1)};
    }
    offsets += static_cast<char>(bytes.size());
    bytes += {'\x10', '\x01'};
    const char table = static_cast<char>(bytes.size());
    bytes += offsets + std::string(6, '\0') + "\x01\x01";
    for (const char number : {static_cast<char>(levels + 1), '\0', table})
        bytes += std::string(7, '\0') + number;
    return bytes;
}

// A binary list of 250 times the same object: a text or data, by its kind, of 10000 units.
std::string Repeating(char kind) {
    const auto number = [](int value) { return std::string{static_cast<char>(value >> 8), static_cast<char>(value)}; };
    const std::string head = "bplist00";
    const std::string list = std::string("\xAF\x10\xFA", 3) + std::string(250, '\1');
    const std::string object = kind + std::string("\x11") + number(10000) + std::string(20000, 'x');
    std::string bytes = head + list + object + number(static_cast<int>(head.size())) +
                        number(static_cast<int>((head + list).size())) + std::string(6, '\0') + "\x02\x01";
    for (const size_t last : {size_t{2}, size_t{0}, (head + list + object).size()})
        bytes += std::string(6, '\0') + number(static_cast<int>(last));
    return bytes;
}

std::string Repeated(const std::string& text, int times) {
    std::string all;
    while (times-- > 0)
        all += text;
    return all;
}

TEST(PropertyList, SeesTheNestingThatTheParserSees) {
    const std::string open = Repeated("<dict><key>k</key>", 9), close = Repeated("</dict>", 9);
    const std::string nested = "<plist>" + open + close + "</plist>";
    for (const std::string& hidden : {
             "<plist>" + Repeated("<dict><key>k</key><!--></dict>-->", 9) + close + "</plist>",
             "<plist>" + Repeated("<dict><?x \"?></dict>\"?><key>k</key>", 9) + close + "</plist>",
             "<?xml x=\"?> <!-- \"?>" + nested + "<!-- -->",
             "<!DOCTYPE plist \"> <!-- \">" + nested + "<!-- -->",
             "<!DOCTYPE plist [ > <!-- ]>" + nested + "<!-- -->",
             "<plist x=\"> <!-- \">" + open + close + "</plist><!-- -->",
         }) {
        // The parser takes each, so that nothing but the look at the shape stands in the way.
        plist_t root = nullptr;
        plist_from_memory(hidden.data(), static_cast<uint32_t>(hidden.size()), &root);
        EXPECT_NE(root, nullptr) << hidden;
        plist_free(root);
        EXPECT_FALSE(Quern::IsPropertyListWithin(hidden, {8, 1000})) << hidden;
    }
    // An empty dictionary is a level of its own, and none for what follows it, however it is written.
    for (const char* empty : {"<dict/>", "<dict />", "<dict></dict >"}) {
        const std::string wide = Xml("<dict>" + Repeated(std::string("<key>k</key>") + empty, 20) + "</dict>");
        EXPECT_TRUE(Quern::IsPropertyListWithin(wide, {2, 1000})) << empty;
        EXPECT_FALSE(Quern::IsPropertyListWithin(wide, {1, 1000})) << empty;
    }
}

TEST(PropertyList, RefusesWhatWouldOverrunTheParser) {
    const std::string deep = Repeated("<array>", 100000);
    std::string selfHolding = Doubling(1);
    selfHolding[9] = 0;
    std::string zeroInKey = Binary(kManifest), numberAsKey = zeroInKey;
    zeroInKey[zeroInKey.find("\x53one") + 2] = '\0';
    numberAsKey.replace(numberAsKey.find("\x53one"), 4, "\x12one", 4);
    const auto expectRefused = [](const char* expected, const std::vector<std::string>& hostile) {
        for (const std::string& bytes : hostile) {
            InfoValue root;
            const char* why = "nothing";
            EXPECT_FALSE(Quern::ParsePropertyList(bytes, root, why));
            EXPECT_STREQ(why, expected) << bytes.substr(0, 200);
            EXPECT_FALSE(root.IsDictionary());
        }
    };
    expectRefused("it is no property list, or damaged", {"", "{ GameId = 1; }"});
    expectRefused("it holds no dictionary", {Xml("<array/>")});
    expectRefused("it is too large",
                  {Xml(deep + Repeated("</array>", 100000)), std::string(Quern::kLargestPropertyList + 1, ' ')});
    expectRefused("it is damaged, or nests too deep",
                  {zeroInKey, numberAsKey, Doubling(40), selfHolding, Binary(kManifest).substr(0, 100),
                   Xml(Repeated("<array>", 50000) + Repeated("</array>", 50000)),
                   Xml(Repeated("<dict><key>k</key>", 30000) + Repeated("</dict>", 30000)),
                   Xml(Repeated("<array><!-- </array> -->", 20000)), Xml(Repeated("<array x=\"</array>\">", 20000)),
                   Xml("<array>" + Repeated("<true/>", 140000))});
    // The limits hold at their edge: six doublings are 127 objects on six levels.
    EXPECT_TRUE(Quern::IsPropertyListWithin(Doubling(6), {6, 127}));
    EXPECT_FALSE(Quern::IsPropertyListWithin(Doubling(6), {5, 127}));
    EXPECT_FALSE(Quern::IsPropertyListWithin(Doubling(6), {6, 126}));
    // 251 objects, and 250 times 156 for 10000 bytes, or 312 for as many units of two.
    for (const auto& [kind, nodes] : {std::pair{'\x4F', 39251u}, {'\x5F', 39251u}, {'\x6F', 78251u}}) {
        EXPECT_TRUE(Quern::IsPropertyListWithin(Repeating(kind), {1, nodes}));
        EXPECT_FALSE(Quern::IsPropertyListWithin(Repeating(kind), {1, nodes - 1}));
    }
    EXPECT_TRUE(Quern::IsPropertyListWithin(Xml(Repeated("<array>", 6)), {6, 100}));
    EXPECT_FALSE(Quern::IsPropertyListWithin(Xml(Repeated("<array>", 6)), {5, 100}));
}

TEST(InfoDictionary, TakesTheHostsFileAndReadsItOnce) {
    const std::string chosen = CacheFolder() + "/chosen", other = CacheFolder() + "/other";
    WriteFile(chosen, Binary(kManifest));
    WriteFile(other, Xml("<dict/>"));
    setenv("ORVANE_INFO_PLIST", other.c_str(), 1);
    EXPECT_TRUE(gs_OrvaneSetInfoPlist(other.c_str()));
    EXPECT_TRUE(gs_OrvaneSetInfoPlist(chosen.c_str()));
    CapturedConsole console;

    std::vector<const InfoValue*> seen(8);
    Threads(8, [&](int number) { seen[number] = &InfoDictionary::Current().Root(); }).Join();
    for (const InfoValue* root : seen)
        EXPECT_EQ(root, seen[0]);
    EXPECT_EQ(BundleIdOf(*seen[0]), "com.example.game");

    WriteFile(chosen, Xml("<dict/>"));
    EXPECT_FALSE(gs_OrvaneSetInfoPlist(other.c_str()));
    EXPECT_EQ(BundleIdOf(InfoDictionary::Current().Root()), "com.example.game");
    EXPECT_THAT(console.Take(), IsEmpty());
}

TEST(InfoDictionary, NamesTheContainerAfterTheBundleId) {
    const std::string path = CacheFolder() + "/environment";
    WriteFile(path, kManifest);
    setenv("ORVANE_INFO_PLIST", path.c_str(), 1);
    setenv("XDG_DATA_HOME", CacheFolder().c_str(), 1);
    unsetenv("ORVANE_HOME");
    EXPECT_EQ(Quern::PathSource::Current().Home(), CacheFolder() + "/com.example.game");
}

void ExpectEmptyManifestWith(const std::string& line) {
    CapturedConsole console;
    for (int reads = 0; reads < 2; ++reads)
        EXPECT_THAT(std::get<InfoValue::Dictionary>(InfoDictionary::Current().Root().value), IsEmpty());
    EXPECT_THAT(console.Take(), ElementsAre(line));
}

TEST(InfoDictionary, IsEmptyForADamagedFile) {
    const std::string path = CacheFolder() + "/damaged";
    WriteFile(path, kManifest.substr(0, kManifest.find("<key>Game")));
    setenv("ORVANE_INFO_PLIST", path.c_str(), 1);
    ExpectEmptyManifestWith("The manifest " + path + " is not used: it is no property list, or damaged");
}

TEST(InfoDictionary, WaitsForNoPipe) {
    const std::string path = CacheFolder() + "/pipe";
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    InfoDictionary::SetPath(path.c_str());
    alarm(60);
    ExpectEmptyManifestWith("The manifest " + path + " cannot be read");
}

}  // namespace
