#include "Log/Entry.h"

#include "Support/LogWriter.h"
#include "Support/Test.h"

namespace OrvaneLog {
namespace {

using OrvaneTest::NumberedLine;

const std::string kLoss = "[F][ sg_buffer_async.Length() >= BUFFER_BLOCK_LENTH*4/5, len: 122900";

std::vector<std::string> Split(const std::string& text, size_t pieceSize, bool splitGlued = false) {
    std::vector<std::string> entries;
    EntrySplitter splitter([&entries](const Entry& entry) { entries.emplace_back(entry.whole); }, splitGlued);
    for (size_t at = 0; at < text.size(); at += pieceSize)
        splitter.Feed(std::string_view(text).substr(at, pieceSize));
    splitter.End();
    return entries;
}

TEST(LogLine, TakesAFormattedLineApart) {
    LogLine line;
    ASSERT_TRUE(
        ParseLine("[2026-11-24 21:50:39 123] | Warning | [My module] |18446744073709551615| a:b.cpp:-7|operator|||"
                  " text | with | bars\nand a further line\n",
                  line));
    std::ostringstream parts;
    parts << line.stamp << '@' << line.time << '@' << line.level << '@' << line.module << '@' << line.thread << '@'
          << line.file << '@' << line.line << '@' << line.function << '@' << line.text;
    EXPECT_EQ(parts.str(),
              "20261124215039123@2026-11-24 21:50:39 123@2@My module@18446744073709551615@a:b.cpp@-7@"
              "operator||@text | with | bars\nand a further line");

    ASSERT_TRUE(ParseLine("[2026-11-24 21:50:39 123] | Unkonwn | [] |0| (null):0|(null)| ", line));
    EXPECT_EQ(line.level, kUnknownLevel);
    EXPECT_EQ(line.text, "");

    for (const char* wrong :
         {"", "[", "2026-11-24 21:50:39 123] | Info | [a] |1| f:1|g| t",
          "[2026-11-24 21:50:39] | Info | [a] |1| f:1|g| t", "[2026-11-24 21:50:39 123] | Info | [a] |x| f:1|g| t",
          "[2026-11-24 21:50:39 123] | Info | [a] |1| f|g| t", "[2026-11-24 21:50:39 123] | Info | [a] |1| f:1|g",
          "[2026-11-24 21:50:39 123] | Info |\n [a] |1| f:1|g| t"})
        EXPECT_FALSE(ParseLine(wrong, line)) << wrong;
}

TEST(EntrySplitter, CutsAtTheBeginningsOfLinesHoweverTheTextComes) {
    const std::vector<std::string> expected = {
        "an orphan",     "another", NumberedLine(1), NumberedLine(2) + "\nsecond line\n\n[2026 no line\n  last",
        NumberedLine(3), kLoss,     "a tip",         NumberedLine(4)};
    std::string text;
    for (const std::string& entry : expected)
        text += entry + "\n";
    for (size_t size = 1; size <= text.size(); ++size)
        ASSERT_EQ(Split(text, size), expected) << size;
    text.pop_back();
    EXPECT_EQ(Split(text, text.size()), expected) << "the last newline may lack";
    EXPECT_TRUE(Split("", 1).empty());
}

// The synchronous file loses the newline of a line that fills the formatting buffer.
TEST(EntrySplitter, PartsLinesThatLostTheirNewline) {
    std::string full = NumberedLine(1);
    full.resize(4095, 'x');
    const std::string text = full + full + NumberedLine(2) + "\n" + NumberedLine(3) + "\n";
    EXPECT_EQ(Split(text, 1000, true), (std::vector<std::string>{full, full, NumberedLine(2), NumberedLine(3)}));
    EXPECT_EQ(Split(text, 1000, false).size(), 2u) << "a record's lines have theirs";
}

TEST(EntrySplitter, AnEndlessEntryIsGivenInParts) {
    EntrySplitter splitter([](const Entry& entry) { EXPECT_LE(entry.whole.size(), 2 * EntrySplitter::kLongestEntry); },
                           true);
    splitter.Feed(NumberedLine(1));
    for (int i = 0; i < 100; ++i)
        splitter.Feed(std::string(100000, i % 2 ? 'x' : '\n'));
    splitter.End();
    size_t total = 0;
    for (const std::string& part : Split(NumberedLine(1) + std::string(1 << 20, 'y'), 4096))
        total += part.size();
    EXPECT_EQ(total, NumberedLine(1).size() + (1 << 20));
}

}  // namespace
}  // namespace OrvaneLog
