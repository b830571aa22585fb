#include "Log/Follow.h"

#include "Support/Test.h"
#include "Tools/Log/Collected.h"

namespace OrvaneLog {
namespace {

using namespace OrvaneTest;

std::string Open(std::string record) {
    record.pop_back();
    return MappedBlock(record);
}

class FollowTest : public testing::Test {
protected:
    void Start(const std::string& path) {
        _arguments.paths = {path};
        _set = std::make_unique<FollowSet>(_arguments, _keys.ring, _report, _printer);
        ASSERT_TRUE(_set->Check());
    }
    // What a poll shows.
    std::string Poll() {
        const size_t before = _output.Text().size();
        _set->Poll();
        return _output.Text().substr(before);
    }
    std::string PollTwice() {
        const std::string first = Poll();
        return first + Poll();
    }
    std::string Write(const std::string& name, const std::string& content, bool append = false) {
        return _folder.Write(name, content, append);
    }

    const std::string _hour21 = "OrvaneSDKLog/Pell/Pell_2026112421.xlog",
                      _hour22 = "OrvaneSDKLog/Pell/Pell_2026112422.xlog";
    TemporaryFolder _folder;
    Arguments _arguments;
    TestKeys _keys;
    std::string _said;
    Report _report{[this](const std::string& message) { _said += message + "\n"; }};
    StringOutput _output;
    TextPrinter _printer{_output};
    std::unique_ptr<FollowSet> _set;
};

TEST_F(FollowTest, ABlockIsShownAsItGrowsAndNotAgainAsARecord) {
    const WriterKey& writer = _keys.writer;
    const auto one = NumberedLines(0, 3), two = NumberedLines(3, 4), three = NumberedLines(7, 2),
               four = NumberedLines(20, 5);
    const auto upTo = [&](const std::vector<std::string>& more, std::vector<std::string> lines) {
        lines.insert(lines.end(), more.begin(), more.end());
        return lines;
    };
    Write(_hour21, EncryptedRecord(1, one, writer));
    Write("Pell.mmap3", Open(EncryptedRecord(2, two, writer)));
    Start(_folder.Path());
    EXPECT_EQ(Poll(), Joined(one) + Joined(two));
    EXPECT_EQ(Poll(), "");
    // The block grows in place; then it is flushed with more in it than was shown, and the next block begins.
    Write("Pell.mmap3", Open(EncryptedRecord(2, upTo(three, two), writer)));
    EXPECT_EQ(Poll(), Joined(three));
    const std::string tip = "tip\n";
    Write(_hour21, PlainRecord(tip) + EncryptedRecord(2, upTo(four, upTo(three, two)), writer), true);
    Write("Pell.mmap3", Open(EncryptedRecord(3, one, writer)));
    EXPECT_EQ(Poll(), tip + Joined(four) + Joined(one));
    // The record comes later than the block that follows it: its lines come first all the same.
    Write("Pell.mmap3", Open(EncryptedRecord(4, two, writer)));
    EXPECT_EQ(Poll(), "");
    Write(_hour21, EncryptedRecord(3, upTo(three, one), writer), true);
    EXPECT_EQ(Poll(), Joined(three) + Joined(two));
    Write("Pell.mmap3", MappedBlock(""));
    EXPECT_EQ(Poll(), "");
    EXPECT_EQ(_said, "");
}

TEST_F(FollowTest, GoesOnThroughTheHours) {
    Write(_hour21, CompressedRecord(1, {"old"}));
    Start(_folder / "OrvaneSDKLog/Pell");
    EXPECT_EQ(Poll(), "old\n");
    // Half a record is waited for.
    const std::string record = CompressedRecord(2, {"new"});
    Write(_hour21, record.substr(0, 80), true);
    EXPECT_EQ(Poll(), "");
    Write(_hour21, record.substr(80), true);
    EXPECT_EQ(Poll(), "new\n");
    Write(_hour22, CompressedRecord(3, {"next hour"}));
    Write(_hour21, CompressedRecord(4, {"late"}), true);
    EXPECT_EQ(PollTwice(), "late\nnext hour\n");
    // Removed for its size and begun anew.
    std::filesystem::remove(_folder / _hour22);
    EXPECT_EQ(Poll(), "");
    Write(_hour22, CompressedRecord(1, {"anew"}));
    EXPECT_EQ(Poll(), "anew\n");
    EXPECT_EQ(_said, "");
}

TEST_F(FollowTest, PlainTextAndModulesThatComeLater) {
    _arguments.filter.modules = {"Sample"};
    const std::string text = "OrvaneSDKLog/Sample/Sample_2026112421.log";
    Start(_folder.Path());
    EXPECT_EQ(Poll(), "");
    Write("OrvaneSDKLog/Other/Other_2026112421.log", NumberedLine(9) + "\n");
    Write(text, NumberedLine(1) + "\nmore\n");
    EXPECT_EQ(PollTwice(), NumberedLine(1) + "\nmore\n");
    Write(text, NumberedLine(2).substr(0, 10), true);
    EXPECT_EQ(PollTwice(), "") << "half a line is waited for";
    Write(text, NumberedLine(2).substr(10) + "\n", true);
    EXPECT_EQ(PollTwice(), NumberedLine(2) + "\n");
}

TEST_F(FollowTest, TellsOfAMissingKeyOnceAndOfDamage) {
    const WriterKey writer = AgreeWith(ReaderKey(1).publicKey);
    Write(_hour21, EncryptedRecord(1, {"a"}, writer) + EncryptedRecord(2, {"b"}, writer) + "garbage" +
                       CompressedRecord(3, {"c"}));
    Write("Pell.mmap3", Open(EncryptedRecord(3, {"d"}, writer)));
    Start(_folder / _hour21);
    EXPECT_EQ(Poll(), "c\n");
    EXPECT_EQ(std::count(_said.begin(), _said.end(), '\n'), 2) << _said;
    EXPECT_NE(_said.find("skipped 7 bytes"), std::string::npos);
    _arguments.paths = {_folder / "gone"};
    EXPECT_FALSE(_set->Check());
}

}  // namespace
}  // namespace OrvaneLog
