#include "Log/BlockWalk.h"

#include "Support/Test.h"
#include "Tools/Log/Collected.h"

namespace OrvaneLog {
namespace {

using namespace OrvaneTest;

Collected WalkOf(const std::string& bytes, KeyRing& keys) {
    Collected collected;
    MemorySource source(Bytes(bytes));
    MakeWalk(SourceKind::kMappedBlock, source, keys, collected)->Advance(false);
    return collected;
}

std::string WithoutEnd(std::string record) {
    record.pop_back();
    return record;
}

TEST(BlockWalk, ALeftOverBlockHasNoEndByte) {
    TestKeys keys;
    KeyRing none;
    const auto lines = NumberedLines(0, 100);
    const std::string encrypted = EncryptedRecord(3, lines, keys.writer);
    for (const std::string& record : {CompressedRecord(3, lines), encrypted}) {
        const Collected read = WalkOf(MappedBlock(WithoutEnd(record)), keys.ring);
        EXPECT_EQ(read.text, Joined(lines));
        EXPECT_EQ(read.Verdicts(), "sound");
        EXPECT_EQ(read.records[0].size, record.size() - 1);
        EXPECT_EQ(WalkOf(record, keys.ring).text, Joined(lines)) << "a copy that ends with the record";
    }
    EXPECT_EQ(WalkOf(MappedBlock(WithoutEnd(encrypted)), none).Verdicts(), "encrypted");
    EXPECT_EQ(WalkOf(MappedBlock(PlainRecord("tip\n")), none).text, "tip\n");
}

TEST(BlockWalk, AZeroMagicIsAnEmptyBlock) {
    KeyRing none;
    std::string cleared = MappedBlock(CompressedRecord(3, NumberedLines(0, 10)));
    cleared[0] = '\0';
    for (const std::string& empty : {std::string(), std::string(153600, '\0'), std::string(10, '\0'), cleared}) {
        const Collected read = WalkOf(empty, none);
        EXPECT_TRUE(read.records.empty() && read.gaps.empty());
    }
}

TEST(BlockWalk, DamageGivesWhatCanBeHad) {
    KeyRing none;
    const auto lines = NumberedLines(0, 100);
    const std::string record = WithoutEnd(CompressedRecord(3, lines));
    // A length that no block can hold: the payload goes on into the zeros, which end the stream.
    std::string lied = MappedBlock(record);
    lied[8] = '\x7F';
    Collected read = WalkOf(lied, none);
    EXPECT_EQ(read.text, Joined(lines));
    EXPECT_EQ(read.Verdicts(), "damaged");

    for (size_t length = 1; length < record.size(); length += 11) {
        read = WalkOf(record.substr(0, length), none);
        EXPECT_TRUE(Joined(lines).starts_with(read.text)) << length;
        EXPECT_EQ(read.gaps.size(), length < 74 ? 1u : 0u) << length;
        EXPECT_TRUE(length < 74 || read.Verdicts() == "damaged") << length;
    }
    EXPECT_EQ(WalkOf(MappedBlock("no header"), none).gaps.size(), 1u);

    // The largest block there can be.
    RecordFields full;
    full.payload = DeflateLines(NumberedLines(0, 2000));
    full.payload.resize(153600 - 73, '\x07');
    EXPECT_FALSE(WalkOf(RecordBytes(full, false), none).text.empty());
}

}  // namespace
}  // namespace OrvaneLog
