#include "Log/SourceList.h"

#include "Log/LogFileName.h"
#include "Log/LogWalk.h"
#include "Support/Test.h"
#include "Tools/Log/Collected.h"

namespace OrvaneLog {
namespace {

using OrvaneTest::TemporaryFolder;

std::vector<std::string> Names(const SourceList& list) {
    std::vector<std::string> names;
    for (const std::string& file : list.files)
        names.emplace_back(BaseName(file));
    return names;
}

TEST(SourceList, OrdersByModuleAndHourTheBlocksLast) {
    const TemporaryFolder folder;
    for (const char* name : {"OrvaneSDKLog/Pell/Pell_2026112421.xlog", "OrvaneSDKLog/Pell/Pell_2026112409.xlog",
                             "OrvaneSDKLog/Pell/notes.txt", "OrvaneSDKLog/Alpha/Alpha_2027010100.log",
                             "OrvaneSDKLog/Alpha/Alpha_2026010100.xlog", "Alpha.mmap3", "Pell.mmap3"})
        folder.Write(name, "");
    const std::vector<std::string> all = {"Alpha_2026010100.xlog", "Alpha_2027010100.log", "Pell_2026112409.xlog",
                                          "Pell_2026112421.xlog",  "Alpha.mmap3",          "Pell.mmap3"};
    EXPECT_EQ(Names(ListSources({folder.Path()}, {})), all);
    EXPECT_EQ(Names(ListSources({folder / "OrvaneSDKLog"}, {})), all);
    const std::vector<std::string> pell = {"Pell_2026112409.xlog", "Pell_2026112421.xlog", "Pell.mmap3"};
    EXPECT_EQ(Names(ListSources({folder / "OrvaneSDKLog/Pell"}, {})), pell);
    EXPECT_EQ(Names(ListSources({folder / "OrvaneSDKLog/Pell/"}, {})), pell);
    EXPECT_EQ(Names(ListSources({folder.Path()}, {"Pell"})), pell);
    EXPECT_EQ(Names(ListSources({"-", folder / "OrvaneSDKLog/Pell", "gone.xlog"}, {})),
              (std::vector<std::string>{"-", pell[0], pell[1], pell[2], "gone.xlog"}));

    // A journal stands for its block where that is gone.
    folder.Write("Pell.journal3", "");
    EXPECT_EQ(Names(ListSources({folder / "OrvaneSDKLog"}, {})), all);
    std::filesystem::rename(folder / "Pell.mmap3", folder / "Alpha.journal3");
    EXPECT_EQ(Names(ListSources({folder / "OrvaneSDKLog"}, {})).back(), "Pell.journal3");
    EXPECT_EQ(Names(ListSources({folder / "OrvaneSDKLog/Pell"}, {})).back(), "Pell.journal3");
    EXPECT_EQ(Names(ListSources({folder.Path()}, {"Pell"})).back(), "Pell.journal3");

    std::filesystem::create_directory(folder / "empty");
    EXPECT_EQ(ListSources({folder / "empty"}, {}).problems.size(), 1u);
}

TEST(LogFileName, TellsModuleAndHour) {
    EXPECT_EQ(ParseLogFileName("/a_1/My_Mod_2026112421.xlog").module, "My_Mod");
    EXPECT_EQ(ParseLogFileName("/a_1/My_Mod_2026112421.xlog").hour, "2026112421");
    EXPECT_EQ(ParseLogFileName("Mod_202611242.log").hour, "");
    EXPECT_EQ(ParseLogFileName("Mod_2026112421.mmap3").module, "Mod_2026112421");
    EXPECT_TRUE(ParseLogFileName("Mod.mmap3").isBlock);
    EXPECT_TRUE(MayHoldModule("x/Quern_2026112421.log", {"A module of a very long name"}));
    EXPECT_TRUE(MayHoldModule("x/whatever.log", {"A"}));
    EXPECT_FALSE(MayHoldModule("x/B_2026112421.log", {"A"}));
}

TEST(KindOf, ByNameElseByContent) {
    const auto kind = [](const std::string& name, const std::string& content) {
        MemorySource source(Bytes(content));
        return KindOf(name, source);
    };
    const std::string record = OrvaneTest::CompressedRecord(1, {"text"});
    EXPECT_EQ(kind("a.xlog", "text"), SourceKind::kRecords);
    EXPECT_EQ(kind("a.log", "text"), SourceKind::kText);
    EXPECT_EQ(kind("a.log", std::string(100, '\0') + "text"), SourceKind::kText);
    EXPECT_EQ(kind("a.log", record), SourceKind::kRecords);
    EXPECT_EQ(kind("a.mmap3", ""), SourceKind::kMappedBlock);
    EXPECT_EQ(kind("-", "text\n\ttext"), SourceKind::kText);
    EXPECT_EQ(kind("-", record), SourceKind::kRecords);
    EXPECT_EQ(kind("-", "torn\x01" + record), SourceKind::kRecords);
    EXPECT_EQ(kind("copy.bin", OrvaneTest::MappedBlock(record)), SourceKind::kMappedBlock);
}

TEST(TextWalk, HandsOnTextAndLeavesOutZeros) {
    KeyRing none;
    Collected read;
    read.isText = true;
    const std::string text =
        "one\ntwo\n" + std::string(5000, '\0') + "three\n" + std::string(300000, 'x') + std::string(3, '\0');
    MemorySource source(Bytes(text));
    MakeWalk(SourceKind::kText, source, none, read)->Advance(false);
    EXPECT_EQ(read.text, "one\ntwo\nthree\n" + std::string(300000, 'x'));
    ASSERT_EQ(read.gaps.size(), 2u);
    EXPECT_EQ(read.gaps[0].size, 5000u);
    EXPECT_EQ(read.gaps[1].offset, text.size() - 3);
}

}  // namespace
}  // namespace OrvaneLog
