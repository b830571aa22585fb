#include "Storage/Log/AutoBuffer.h"
#include "Storage/Log/PtrBuffer.h"
#include "Support/LogRecords.h"
#include "Support/Test.h"

namespace Quern {
namespace {

TEST(PtrBuffer, CutsAtItsMaximumAndKeepsItsPlace) {
    char memory[8] = "abcd";
    PtrBuffer buffer(memory, 4, 6);
    buffer.Seek(-1, kSeekEnd);
    buffer.Write("WXYZ", 4);
    EXPECT_EQ(std::string(memory, 6), "abcWXY");
    EXPECT_EQ(buffer.Pos(), 6u);
    EXPECT_EQ(buffer.Length(), 6u);
    EXPECT_EQ(memory[6], '\0') << "nothing behind the maximum";

    char out[8] = {};
    EXPECT_EQ(buffer.Read(out, 4, 4), 2u);
    EXPECT_STREQ(out, "XY");
    buffer.Seek(-100, kSeekCurrent);
    EXPECT_EQ(buffer.Pos(), 0u);
    EXPECT_EQ(buffer.Read(out, 2), 2u);
    EXPECT_EQ(buffer.PosLength(), 4u);
    buffer.Seek(100, kSeekStart);
    EXPECT_EQ(buffer.Pos(), 6u);

    PtrBuffer whole(memory, sizeof memory);
    EXPECT_EQ(whole.Length(), sizeof memory);
    whole.Reset();
    EXPECT_EQ(whole.Ptr(), nullptr);
}

TEST(PtrBufferDeathTest, BrokenContractsEndTheProcessInTheirOwnWords) {
    char memory[4] = {};
    PtrBuffer buffer(memory, 2, 4);
    char out[4];
    EXPECT_DEATH(PtrBuffer(memory, 5, 4), "length_ <= max_length_");
    EXPECT_DEATH(buffer.Write("x", 1, 3), "\\(unsigned int\\)_nPos <= Length\\(\\)");
    EXPECT_DEATH(buffer.Read(out, 1, 2), "\\(unsigned int\\)_nPos < Length\\(\\)");
    EXPECT_DEATH(buffer.Length(3, 2), "\\(size_t\\)_nPos <= _nLenght");
}

TEST(AutoBuffer, GrowsInUnitsAndZeroesWhatIsNew) {
    AutoBuffer buffer;
    buffer.Write("abc", 3);
    EXPECT_EQ(buffer.Capacity(), 128u);
    EXPECT_EQ(buffer.Pos(), 3);
    buffer.AllocWrite(126);
    EXPECT_EQ(buffer.Capacity(), 256u);
    EXPECT_EQ(buffer.Length(), 129u);
    for (size_t i = 3; i < buffer.Capacity(); ++i)
        ASSERT_EQ(buffer.Ptr()[i], 0) << i;
    buffer.AllocWrite(256, false);
    EXPECT_EQ(buffer.Length(), 129u) << "room without length";

    AutoBuffer moved("hello", 5);
    moved.Seek(5, kSeekStart);
    moved.Move(2);
    EXPECT_EQ(OrvaneTest::TextOf(moved), std::string("\0\0hello", 7));
    EXPECT_EQ(moved.Pos(), 7);
    moved.Move(-4);
    EXPECT_EQ(OrvaneTest::TextOf(moved), "llo");
    EXPECT_EQ(moved.Pos(), 3);
    moved.Move(-100);
    EXPECT_EQ(moved.Length(), 0u);
}

TEST(AutoBuffer, CopiesFromAndToItsKindAndHandsItsMemoryOver) {
    AutoBuffer source("0123456789", 10), out;
    EXPECT_EQ(source.Read(4, out, 100), 6u);
    EXPECT_EQ(source.Read(out, 2), 2u);
    EXPECT_EQ(OrvaneTest::TextOf(out), "45678901");
    out.Write(0, AutoBuffer("xy", 2));
    EXPECT_EQ(OrvaneTest::TextOf(out), "xy678901");

    AutoBuffer taker;
    taker.Attach(out);
    EXPECT_EQ(out.Length(), 0u);
    size_t length = 0;
    void* memory = taker.Detach(&length);
    EXPECT_EQ(length, 8u);
    EXPECT_EQ(taker.Ptr(), nullptr);
    taker.Attach(memory, length);
    EXPECT_EQ(OrvaneTest::TextOf(taker), "xy678901");
}

TEST(AutoBufferDeathTest, HoldsTwentyMebibytesAndNotOneByteMore) {
    AutoBuffer full;
    full.AllocWrite(20971520);
    EXPECT_EQ(full.Length(), 20971520u);
    EXPECT_DEATH(full.Write(20971520, "x", 1), "_len <= 20 \\* 1024 \\* 1024");

    AutoBuffer buffer("abc", 3);
    EXPECT_DEATH(buffer.Write(4, "x", 1), "\\(size_t\\)_pos <= Length\\(\\)");
    EXPECT_DEATH(buffer.Length(4, 3), "\\(size_t\\)_pos <= _lenght");
    EXPECT_DEATH(buffer.Length(0, 129), "_lenght <= Capacity\\(\\)");
}

}  // namespace
}  // namespace Quern
