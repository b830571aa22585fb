#include "Storage/Log/LogBuffer.h"

#include <ctime>

#include "Support/LogRecords.h"
#include "Support/Test.h"

namespace Quern {
namespace {

using namespace OrvaneTest;

constexpr size_t kBlock = 153600;

struct Block {
    Block(bool compress, const char* key) : buffer(memory.data(), memory.size(), compress, key) {}
    std::vector<uint8_t> memory = std::vector<uint8_t>(kBlock);
    LogBuffer buffer;
};

bool Write(LogBuffer& buffer, const std::string& text) {
    return buffer.Write(text.data(), text.size());
}

int CurrentHour() {
    const time_t now = time(nullptr);
    return localtime(&now)->tm_hour;
}

std::string RandomLine(std::mt19937& random) {
    std::string line(random() % 300, '\0');
    for (char& c : line)
        c = static_cast<char>(' ' + random() % (random() % 8 ? 16 : 95));
    return line + "\n";
}

TEST(LogBuffer, OneLineIsOneRecordToTheByte) {
    for (const bool encrypt : {false, true}) {
        Block block(true, encrypt ? TestPublicKeyDigits().c_str() : "");
        int hour = CurrentHour();
        ASSERT_TRUE(Write(block.buffer, "a line\n"));
        EXPECT_EQ(block.memory[0], encrypt ? 7 : 9);
        const size_t length = block.buffer.GetData().Length();
        const std::string bytes = Flush(block.buffer);
        if (hour != CurrentHour()) hour = CurrentHour();

        ASSERT_EQ(bytes.size(), length + 1);
        const std::vector<DecodedRecord> records = DecodeRecords(bytes);
        ASSERT_EQ(records.size(), 1u);
        EXPECT_EQ(records[0].magic, encrypt ? 7 : 9);
        EXPECT_EQ(records[0].seq, 1);
        EXPECT_EQ(records[0].endHour, hour);
        EXPECT_EQ(records[0].text, "a line\n");
        EXPECT_EQ(records[0].publicKey == std::string(64, '\0'), !encrypt);
        EXPECT_EQ(std::vector<uint8_t>(kBlock), block.memory) << "nothing is left behind in an empty block";
    }
}

TEST(LogBuffer, ManyLinesGoThroughWhateverTheirLengths) {
    std::mt19937 random(1);
    Block encrypted(true, TestPublicKeyDigits().c_str()), plain(true, nullptr);
    std::string expected, encryptedBytes, plainBytes;
    for (int i = 0; i < 3000; ++i) {
        const std::string line = RandomLine(random);
        expected += line;
        ASSERT_TRUE(Write(encrypted.buffer, line));
        ASSERT_TRUE(Write(plain.buffer, line));
        if (random() % 400 == 0 || i == 2999) {
            encryptedBytes += Flush(encrypted.buffer);
            plainBytes += Flush(plain.buffer);
        }
    }
    EXPECT_EQ(DecodeText(encryptedBytes), expected);
    EXPECT_EQ(DecodeText(plainBytes), expected);
    uint16_t seq = 0;
    for (const DecodedRecord& record : DecodeRecords(encryptedBytes))
        EXPECT_EQ(record.seq, ++seq);
}

TEST(LogBuffer, AGroupWaitsInPlainFormUntilItIsWhole) {
    // The same stream twice, once without a key: the bytes tell which groups are encrypted.
    Block encrypted(true, TestPublicKeyDigits().c_str()), plain(true, "");
    for (int i = 0; i < 50; ++i) {
        const std::string line = "line " + std::string(static_cast<size_t>(i % 5), 'x') + "\n";
        ASSERT_TRUE(Write(encrypted.buffer, line));
        ASSERT_TRUE(Write(plain.buffer, line));
        const size_t length = plain.buffer.GetData().Length() - 73;
        ASSERT_EQ(encrypted.buffer.GetData().Length() - 73, length);
        const uint8_t* ours = encrypted.memory.data() + 73;
        const uint8_t* stream = plain.memory.data() + 73;
        for (size_t at = 0; at + 8 <= length; at += 8)
            ASSERT_NE(memcmp(ours + at, stream + at, 8), 0) << at;
        const size_t tail = length % 8;
        ASSERT_EQ(memcmp(ours + length - tail, stream + length - tail, tail), 0);
    }
}

TEST(LogBuffer, RefusesWhatIsEmptyAndWrapsPlainRecords) {
    for (const bool encrypt : {false, true}) {
        Block block(true, encrypt ? TestPublicKeyDigits().c_str() : "");
        AutoBuffer out;
        EXPECT_FALSE(block.buffer.Write(nullptr, 1));
        EXPECT_FALSE(block.buffer.Write("x", 0));
        EXPECT_FALSE(block.buffer.Write(nullptr, 1, out));
        EXPECT_FALSE(block.buffer.Write("x", 0, out));
        EXPECT_EQ(out.Length(), 0u);
        ASSERT_TRUE(block.buffer.Write("tip\n", 4, out));
        const auto records = DecodeRecords(TextOf(out));
        ASSERT_EQ(records.size(), 1u);
        EXPECT_EQ(records[0].magic, encrypt ? 6 : 8);
        EXPECT_EQ(records[0].seq, 0);
        EXPECT_EQ(records[0].payload, "tip\n");
        EXPECT_EQ(block.buffer.GetData().Length(), 0u) << "the block is not touched";
    }
}

TEST(LogBuffer, ALeftOverBlockIsTakenInAndFlushed) {
    std::vector<uint8_t> memory(kBlock);
    std::string expected;
    {
        LogBuffer dead(memory.data(), memory.size(), true, TestPublicKeyDigits().c_str());
        for (int i = 0; i < 20; ++i) {
            const std::string line = "before the end " + std::to_string(i) + "\n";
            expected += line;
            ASSERT_TRUE(Write(dead, line));
        }
    }
    EXPECT_EQ(memory[0], 7);
    LogBuffer next(memory.data(), memory.size(), true, TestPublicKeyDigits().c_str());
    EXPECT_FALSE(Write(next, "no stream is open")) << "a left-over block is only ever flushed";
    EXPECT_EQ(DecodeText(Flush(next)), expected);
    ASSERT_TRUE(Write(next, "afterwards\n"));
    const auto records = DecodeRecords(Flush(next));
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].seq, 1) << "numbers start anew with each process";
}

TEST(LogBuffer, ForeignContentIsAnEmptyBlock) {
    for (const int magic : {0, 5, 10, 255}) {
        std::vector<uint8_t> memory(kBlock, 0xAB);
        memory[0] = static_cast<uint8_t>(magic);
        LogBuffer buffer(memory.data(), memory.size(), true, "");
        EXPECT_EQ(buffer.GetData().Length(), 0u);
        ASSERT_TRUE(Write(buffer, "x\n"));
        EXPECT_EQ(DecodeText(Flush(buffer)), "x\n");
    }
}

TEST(LogBufferDeathTest, ALeftOverLengthBeyondTheBlockEndsTheProcess) {
    std::vector<uint8_t> memory(kBlock);
    memory[0] = 9;
    const uint32_t longest = kBlock - 73;
    memcpy(memory.data() + 5, &longest, 4);
    {
        LogBuffer fits(memory.data(), memory.size(), true, "");
        EXPECT_EQ(fits.GetData().Length(), kBlock);
        EXPECT_EQ(Flush(fits).size(), kBlock) << "the tail takes the place of the last byte";
    }
    memory[0] = 9;
    const uint32_t tooLong = longest + 1;
    memcpy(memory.data() + 5, &tooLong, 4);
    EXPECT_DEATH(LogBuffer(memory.data(), memory.size(), true, ""), "_nLenght <= MaxLength\\(\\)");
}

TEST(LogBuffer, AFullBlockCutsTheLineThatFitsInPartAndRefusesTheNext) {
    std::mt19937 random(2);
    Block block(true, "");
    std::string expected;
    for (;;) {
        std::string line(4000, '\0');
        for (char& c : line)
            c = static_cast<char>(random() % 256);
        const size_t before = block.buffer.GetData().Length();
        if (!Write(block.buffer, line)) break;
        expected += line;
        ASSERT_GT(block.buffer.GetData().Length(), before);
    }
    EXPECT_EQ(block.buffer.GetData().Length(), kBlock);
    const std::string text = DecodeText(Flush(block.buffer));
    EXPECT_GT(text.size(), kBlock - 5000);
    EXPECT_EQ(text, expected.substr(0, text.size()));
    EXPECT_TRUE(Write(block.buffer, "room again\n"));
}

}  // namespace
}  // namespace Quern
