#include "Serializer/ZYL/ZylBuf.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace Quern {
namespace {

std::string Hex(const char* data, size_t size) {
    std::string text(2 * size + 1, '?');
    EXPECT_EQ(ZylReadBuf(data, size).toHexStr(text.data(), text.size(), nullptr), 0);
    text.pop_back();
    return text;
}

TEST(ZylWriteBufTest, StartsEmpty) {
    const ZylWriteBuf plain;
    EXPECT_EQ(plain.beginPtr, nullptr);
    EXPECT_EQ(plain.position, 0u);
    EXPECT_EQ(plain.length, 0u);
    char memory[4];
    const ZylWriteBuf onMemory(memory, sizeof memory);
    EXPECT_EQ(onMemory.beginPtr, memory);
    EXPECT_EQ(onMemory.length, 4u);
    EXPECT_EQ(ZylWriteBuf(nullptr, 4).length, 0u);
    EXPECT_EQ(ZylReadBuf(nullptr, 4).length, 0u);
}

TEST(ZylWriteBufTest, NumbersAreBigEndian) {
    char memory[64];
    ZylWriteBuf dest(memory, sizeof memory);
    EXPECT_EQ(dest.writeUInt8(0xFE), 0);
    EXPECT_EQ(dest.writeInt8(-1), 0);
    EXPECT_EQ(dest.writeChar('a'), 0);
    EXPECT_EQ(dest.writeUInt16(0x0102), 0);
    EXPECT_EQ(dest.writeInt16(-2), 0);
    EXPECT_EQ(dest.writeUInt32(0x01020304), 0);
    EXPECT_EQ(dest.writeInt32(INT_MIN), 0);
    EXPECT_EQ(dest.writeUInt64(0x0102030405060708), 0);
    EXPECT_EQ(dest.writeInt64(-3), 0);
    EXPECT_EQ(dest.writeFloat(1.5f), 0);
    EXPECT_EQ(dest.writeDouble(-2.0), 0);
    EXPECT_EQ(Hex(memory, dest.position),
              "FEFF61"
              "0102FFFE"
              "0102030480000000"
              "0102030405060708FFFFFFFFFFFFFFFD"
              "3FC00000C000000000000000");
}

TEST(ZylBufTest, NumbersComeBackAtTheirLimits) {
    char memory[64];
    const auto roundTrip = [&memory](auto write, auto read, auto value) {
        ZylWriteBuf dest(memory, sizeof memory);
        ASSERT_EQ((dest.*write)(value), 0);
        ZylReadBuf src(memory, dest.position);
        decltype(value) back{};
        ASSERT_EQ((src.*read)(back), 0);
        EXPECT_EQ(back, value);
        EXPECT_EQ(src.position, sizeof value);
        back = 1;
        EXPECT_EQ((src.*read)(back), -2);
        EXPECT_EQ(back, decltype(value){1}) << "a failed read leaves its target";
    };
    const auto bothLimits = [&roundTrip](auto write, auto read, auto zero) {
        using Limits = std::numeric_limits<decltype(zero)>;
        for (auto value : {Limits::lowest(), Limits::min(), zero, Limits::max()})
            roundTrip(write, read, value);
    };
    bothLimits(&ZylWriteBuf::writeUInt8, &ZylReadBuf::readUInt8, static_cast<unsigned char>(0));
    bothLimits(&ZylWriteBuf::writeInt8, &ZylReadBuf::readInt8, static_cast<signed char>(0));
    bothLimits(&ZylWriteBuf::writeChar, &ZylReadBuf::readChar, '\0');
    bothLimits(&ZylWriteBuf::writeUInt16, &ZylReadBuf::readUInt16, static_cast<unsigned short>(0));
    bothLimits(&ZylWriteBuf::writeInt16, &ZylReadBuf::readInt16, static_cast<short>(0));
    bothLimits(&ZylWriteBuf::writeUInt32, &ZylReadBuf::readUInt32, 0u);
    bothLimits(&ZylWriteBuf::writeInt32, &ZylReadBuf::readInt32, 0);
    bothLimits(&ZylWriteBuf::writeUInt64, &ZylReadBuf::readUInt64, 0ull);
    bothLimits(&ZylWriteBuf::writeInt64, &ZylReadBuf::readInt64, 0ll);
    bothLimits(&ZylWriteBuf::writeFloat, &ZylReadBuf::readFloat, 0.0f);
    bothLimits(&ZylWriteBuf::writeDouble, &ZylReadBuf::readDouble, 0.0);
}

TEST(ZylWriteBufTest, RefusesWhatDoesNotFitAndMovesNothing) {
    char memory[16];
    for (size_t free = 0; free <= 8; ++free) {
        ZylWriteBuf dest(memory, free);
        EXPECT_EQ(dest.writeUInt64(1), free < 8 ? -1 : 0);
        EXPECT_EQ(dest.position, free < 8 ? 0u : 8u);
    }
    ZylWriteBuf full(memory, 1);
    EXPECT_EQ(full.writeUInt8(1), 0);
    EXPECT_EQ(full.writeUInt8(1), -1);
    EXPECT_EQ(full.writeChar('a'), -1);
    EXPECT_EQ(full.writeUInt16(1), -1);
    EXPECT_EQ(full.position, 1u);
    EXPECT_EQ(ZylWriteBuf().writeUInt8(1), -1);
}

TEST(ZylWriteBufTest, KeepsATerminatorBehindCharacters) {
    char memory[4] = {'x', 'x', 'x', 'x'};
    ZylWriteBuf dest(memory, 3);
    EXPECT_EQ(dest.writeCharWithNull('a'), 0);
    EXPECT_EQ(dest.writeCharWithNull('b'), 0);
    EXPECT_EQ(dest.position, 2u);
    EXPECT_STREQ(memory, "ab");
    EXPECT_EQ(dest.writeCharWithNull('c'), -1) << "one free byte is not enough";
    EXPECT_EQ(std::string(memory, 4), std::string("ab\0x", 4));
}

TEST(ZylWriteBufTest, CopiesBytesThatOverlap) {
    char memory[8] = "abcdef";
    ZylWriteBuf dest(memory, 6);
    EXPECT_EQ(dest.writeBytes(nullptr, 0), -8);
    EXPECT_EQ(dest.writeBytes(nullptr, 100), -8) << "null comes before space";
    EXPECT_EQ(dest.writeChar('z'), 0);
    EXPECT_EQ(dest.writeBytes(memory, 6), -1);
    EXPECT_EQ(dest.writeBytes(memory, 5), 0);
    EXPECT_EQ(std::string(memory, 6), "zzbcde");
    EXPECT_EQ(dest.writeBytes(memory, 0), 0);
    EXPECT_EQ(ZylWriteBuf().writeBytes(memory, 0), 0);
}

TEST(ZylWriteBufTest, PrintsOnlyWhatFitsWithItsTerminator) {
    char memory[64];
    for (bool joined : {false, true}) {
        const auto print = [&](ZylWriteBuf& dest) {
            return joined ? dest.join("ab", "", std::string("cd"), "e") : dest.textize("%s%c%s", "ab", 'c', "de");
        };
        ZylWriteBuf exact(memory, 5);
        EXPECT_EQ(print(exact), -1) << "the terminator needs a place";
        EXPECT_EQ(exact.position, 0u);
        ZylWriteBuf dest(memory, 11);
        EXPECT_EQ(print(dest), 0);
        EXPECT_EQ(dest.position, 5u);
        EXPECT_STREQ(memory, "abcde");
        EXPECT_EQ(print(dest), 0);
        EXPECT_STREQ(memory, "abcdeabcde");
        EXPECT_EQ(dest.textize("%s", ""), 0);
        EXPECT_EQ(print(dest), -1);
        EXPECT_EQ(dest.position, 10u);
        ZylWriteBuf none;
        EXPECT_EQ(print(none), -1);
        EXPECT_EQ(none.textize("%s", ""), -1);
    }
}

// Pieces of every size take every path of the short copy, at the very end of the room.
TEST(ZylWriteBufTest, JoinsPiecesOfEverySize) {
    std::string piece;
    for (int size = 0; size < 40; ++size, piece += static_cast<char>('a' + size % 26)) {
        std::vector<char> memory(static_cast<size_t>(2 * size + 1));
        ZylWriteBuf dest(memory.data(), memory.size());
        EXPECT_EQ(dest.join(piece, "-", piece), -1);
        EXPECT_EQ(dest.position, 0u);
        EXPECT_EQ(dest.join(piece, piece), 0);
        EXPECT_EQ(std::string(memory.data()), piece + piece);
    }
}

TEST(ZylReadBufTest, ReadsBytes) {
    char target[4] = "xyz";
    ZylReadBuf src("abc", 3);
    EXPECT_EQ(src.readBytes(nullptr, 1), -8);
    EXPECT_EQ(src.readBytes(target, 4), -2);
    EXPECT_STREQ(target, "xyz");
    EXPECT_EQ(src.readBytes(target, 3), 0);
    EXPECT_STREQ(target, "abc");
    EXPECT_EQ(src.readBytes(target, 0), 0);
    EXPECT_EQ(src.readBytes(target, 1), -2);
    EXPECT_EQ(ZylReadBuf().readBytes(target, 0), 0);
}

TEST(ZylReadBufTest, PrintsHex) {
    char text[8];
    unsigned long used = 99;
    const ZylReadBuf src("\x00\x9F\xE0", 3);
    EXPECT_EQ(src.toHexStr(text, 6, &used), -1);
    EXPECT_EQ(used, 99u);
    EXPECT_EQ(src.toHexStr(text, 7, &used), 0);
    EXPECT_STREQ(text, "009FE0");
    EXPECT_EQ(used, 7u);
    EXPECT_EQ(src.position, 0u);

    ZylReadBuf end("ab", 2);
    end.position = 1;
    EXPECT_EQ(end.toHexStr(text, 3, nullptr), 0);
    EXPECT_STREQ(text, "62");
    end.position = 2;
    EXPECT_EQ(end.toHexStr(text, 0, &used), -1);
    EXPECT_EQ(end.toHexStr(text, 1, &used), 0);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(used, 1u);
}

TEST(ZylReadBufTest, ReadsHex) {
    char memory[4] = {};
    unsigned long used = 99;
    ZylReadBuf buffer(memory, 4);
    EXPECT_EQ(buffer.fromHexStr("0aB", 3, &used), -17);
    EXPECT_EQ(used, 99u);
    EXPECT_EQ(buffer.length, 4u);

    EXPECT_EQ(buffer.fromHexStr("0G", 2, &used), -18);
    EXPECT_EQ(used, 0u);
    EXPECT_EQ(buffer.fromHexStr("7aG0", 4, &used), -18);
    EXPECT_EQ(used, 4u) << "twice the characters taken";
    EXPECT_EQ(memory[0], 0x7A) << "what stands before the fault stays written";
    EXPECT_EQ(buffer.length, 4u);
    for (const char* fault : {"/0", ":0", "@0", "G0", "`0", "g0", "0\xFF", "0 "}) {
        EXPECT_EQ(buffer.fromHexStr(fault, 2, nullptr), -18) << fault;
    }

    buffer.position = 1;
    EXPECT_EQ(buffer.fromHexStr("aBcDeF9012", 10, &used), 0) << "cut to the free bytes";
    EXPECT_EQ(used, 6u);
    EXPECT_EQ(buffer.length, 4u);
    EXPECT_EQ(Hex(memory + 1, 3), "ABCDEF");
    EXPECT_EQ(buffer.fromHexStr("01", 2, &used), 0);
    EXPECT_EQ(buffer.length, 2u) << "the data ends behind the last byte";
    EXPECT_EQ(buffer.position, 1u);
    EXPECT_EQ(buffer.fromHexStr("", 0, &used), 0);
    EXPECT_EQ(used, 0u);
    EXPECT_EQ(buffer.length, 1u);
}

TEST(ZylBufDeathTest, BrokenContractsEndTheProcess) {
    char memory[8] = {};
    ZylWriteBuf dest(memory, 4);
    dest.position = 5;
    ZylReadBuf src(memory, 4);
    src.position = 5;
    const char* const text = "Assertion failed: \\(position <= length\\)";
    EXPECT_DEATH(dest.writeUInt8(1), text);
    EXPECT_DEATH(dest.writeInt64(1), text);
    EXPECT_DEATH(dest.writeCharWithNull('a'), text);
    EXPECT_DEATH(dest.writeBytes(nullptr, 0), text);
    EXPECT_DEATH(dest.textize("a"), text);
    EXPECT_DEATH(dest.join("a"), text);
    unsigned char byte;
    EXPECT_DEATH(src.readUInt8(byte), text);
    EXPECT_DEATH(src.readBytes(nullptr, 0), text);
    EXPECT_DEATH(src.toHexStr(nullptr, 0, nullptr), text);
    EXPECT_DEATH(src.fromHexStr("0", 1, nullptr), text);
    src.position = 0;
    EXPECT_DEATH(src.toHexStr(nullptr, 0, nullptr), "NULL != dest");
    EXPECT_DEATH(src.fromHexStr(nullptr, 0, nullptr), "NULL != src");
}

}  // namespace
}  // namespace Quern
