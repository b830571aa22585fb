#include "Log/LeftOver.h"

#include <zlib.h>

#include "Log/Reading.h"
#include "Support/Test.h"
#include "Tools/Log/Collected.h"

namespace OrvaneLog {
namespace {

using namespace OrvaneTest;

std::string LittleEndian(uint64_t value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i)
        text += static_cast<char>(value >> 8 * i);
    return text;
}

// A journal by the page that tells its format.
std::string Journal(uint64_t undoState, std::string undoTail, const std::string& staged, int64_t offset,
                    std::string name, std::string undoKey = "") {
    const auto crc = crc32(0, reinterpret_cast<const Bytef*>(staged.data()), static_cast<uInt>(staged.size()));
    undoTail.resize(8);
    name.resize(128);
    undoKey.resize(64);
    std::string journal = "ORVJRNL3" + LittleEndian(undoState, 8) + undoTail + LittleEndian(staged.size(), 4) +
                          LittleEndian(crc, 4) + LittleEndian(static_cast<uint64_t>(offset), 8) + name + undoKey +
                          std::string(24, '\0') + staged;
    journal.resize(256 + 153600);
    return journal;
}

class LeftOverTest : public testing::Test {
protected:
    // All that the folder gives, or a path in it.
    std::string Read(const std::string& path = ".") {
        Arguments arguments;
        arguments.paths = {_folder / path};
        StringOutput output;
        Report report([this](const std::string& message) { _said += message + "\n"; });
        Reading(arguments, Look::kAsItStands, _keys.ring, output, report, nullptr).Run();
        return output.Text();
    }

    TestKeys _keys;
    const WriterKey& _writer = _keys.writer;
    TemporaryFolder _folder;
    std::string _said;
    const std::string _file = "OrvaneSDKLog/Pell/Pell_2026112421.xlog";
};

// Killed between the encryption of a group and the length that says so: the journal has the tail in plain form.
TEST_F(LeftOverTest, TheTailOfAnInterruptedWriteIsPutBack) {
    std::vector<std::string> lines = NumberedLines(0, 20);
    while (DeflateLines(lines).size() % 8 == 0)
        lines.push_back("x");
    const std::string deflated = DeflateLines(lines);
    const size_t tail = deflated.size() % 8;
    // The group that the tail begins is enciphered already, together with the first bytes of the next line.
    std::string payload = EncryptGroups(deflated + std::string(8 - tail, '\x55'), _writer.tea);
    payload.resize(deflated.size());
    const RecordFields fields{.magic = 7, .seq = 5, .publicKey = _writer.publicKey, .payload = payload};
    _folder.Write("Pell.mmap3", MappedBlock(RecordBytes(fields, false)));
    Read();
    EXPECT_NE(_said, "") << "the journal is needed";
    _folder.Write("Pell.journal3", Journal(5ull << 32 | deflated.size(), deflated.substr(deflated.size() - tail), "",
                                           -1, "", _writer.publicKey));
    _said.clear();
    EXPECT_EQ(Read(), Joined(lines));
    EXPECT_EQ(_said, "");
    _folder.Write("Pell.journal3", Journal(4ull << 32 | deflated.size(), "wrong", "", -1, "", _writer.publicKey));
    Read();
    EXPECT_NE(_said, "") << "the tail of another state";
}

TEST_F(LeftOverTest, AStagedRecordCountsOnceWhereverTheProcessDied) {
    const auto one = NumberedLines(0, 30), two = NumberedLines(30, 30), three = NumberedLines(60, 30);
    const std::string first = EncryptedRecord(1, one, _writer), second = EncryptedRecord(2, two, _writer);
    std::string open = EncryptedRecord(3, three, _writer);
    open.pop_back();
    const std::string name = "Pell_2026112421.xlog";
    const auto offset = static_cast<int64_t>(first.size());

    _folder.Write("Pell.mmap3", MappedBlock(open));
    for (size_t written = 0; written <= second.size(); written += written + 20 < second.size() ? 20 : 1) {
        _folder.Write(_file, first + second.substr(0, written));
        _folder.Write("Pell.journal3", Journal(0, "", second, offset, name));
        ASSERT_EQ(Read(), Joined(one) + Joined(two) + Joined(three)) << written << _said;
    }
    // Before the append had begun, and while the block was still there as well.
    _folder.Write(_file, first);
    _folder.Write("Pell.journal3", Journal(0, "", second, -1, ""));
    EXPECT_EQ(Read(), Joined(one) + Joined(two) + Joined(three));
    _folder.Write("Pell.mmap3", MappedBlock(second));
    EXPECT_EQ(Read(), Joined(one) + Joined(two));
    // The block is gone: of a torn file the journal's copy counts.
    std::filesystem::remove(_folder / "Pell.mmap3");
    _folder.Write("Pell.journal3", Journal(0, "", second, offset, name));
    for (const size_t written : {size_t{0}, size_t{20}, second.size()}) {
        _folder.Write(_file, first + second.substr(0, written));
        EXPECT_EQ(Read(), Joined(one) + Joined(two)) << written;
        EXPECT_EQ(Read("OrvaneSDKLog/Pell"), Joined(one) + Joined(two)) << written;
    }
    _folder.Write(_file, first);
    EXPECT_EQ(Read("Pell.journal3"), Joined(two));
    EXPECT_EQ(_said, "");
    // A journal that is none changes nothing.
    _folder.Write("Pell.mmap3", MappedBlock(second));
    for (const std::string& none : {std::string(256 + 153600, 'x'), std::string("ORVJRNL3")}) {
        _folder.Write("Pell.journal3", none);
        EXPECT_EQ(Read(), Joined(one) + Joined(two));
    }
}

}  // namespace
}  // namespace OrvaneLog
