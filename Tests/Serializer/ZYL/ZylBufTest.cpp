#include "Serializer/ZYL/ZylBuf.h"

#include "Support/Test.h"

#include <limits>

namespace Quern {
namespace {

std::string Hex(const char* data, size_t size) {
    std::string text(2 * size + 1, '?');
    EXPECT_EQ(ZylReadBuf(data, size).toHexStr(text.data(), text.size(), nullptr), 0);
    text.pop_back();
    return text;
}

TEST(ZylBufTest, NumbersAreBigEndianAndAnyShortfallIsRefused) {
    const auto check = [](auto write, auto read, auto value, const char* bytes) {
        char memory[8];
        for (size_t size = 0; size <= sizeof value; ++size) {
            ZylWriteBuf dest(memory, size);
            const bool fits = size == sizeof value;
            EXPECT_EQ((dest.*write)(value), fits ? 0 : -1) << bytes;
            EXPECT_EQ(dest.position, fits ? size : 0u);
        }
        EXPECT_EQ(Hex(memory, sizeof value), bytes);
        for (size_t size = 0; size <= sizeof value; ++size) {
            ZylReadBuf src(memory, size);
            decltype(value) back{1};
            const bool fits = size == sizeof value;
            EXPECT_EQ((src.*read)(back), fits ? 0 : -2) << bytes;
            EXPECT_EQ(back, fits ? value : decltype(value){1}) << "a failed read leaves its target";
            EXPECT_EQ(src.position, fits ? size : 0u);
        }
    };
    using W = ZylWriteBuf;
    using R = ZylReadBuf;
    check(&W::writeUInt8, &R::readUInt8, static_cast<unsigned char>(0xFE), "FE");
    check(&W::writeInt8, &R::readInt8, static_cast<signed char>(-128), "80");
    check(&W::writeChar, &R::readChar, 'a', "61");
    check(&W::writeUInt16, &R::readUInt16, static_cast<unsigned short>(0xFF01), "FF01");
    check(&W::writeInt16, &R::readInt16, static_cast<short>(-2), "FFFE");
    check(&W::writeUInt32, &R::readUInt32, 0xF1020304u, "F1020304");
    check(&W::writeInt32, &R::readInt32, std::numeric_limits<int>::min(), "80000000");
    check(&W::writeUInt64, &R::readUInt64, 0xF102030405060708ull, "F102030405060708");
    check(&W::writeInt64, &R::readInt64, -3ll, "FFFFFFFFFFFFFFFD");
    check(&W::writeFloat, &R::readFloat, 1.5f, "3FC00000");
    check(&W::writeDouble, &R::readDouble, -2.0, "C000000000000000");
    EXPECT_EQ(ZylWriteBuf(nullptr, 4).writeUInt8(1), -1) << "null has no capacity";
    EXPECT_EQ(ZylReadBuf(nullptr, 4).length, 0u);
}

TEST(ZylBufTest, KeepsATerminatorBehindCharacters) {
    char memory[4] = {'x', 'x', 'x', 'x'};
    ZylWriteBuf dest(memory, 3);
    EXPECT_EQ(dest.writeCharWithNull('a'), 0);
    EXPECT_EQ(dest.writeCharWithNull('b'), 0);
    EXPECT_EQ(dest.position, 2u);
    EXPECT_EQ(dest.writeCharWithNull('c'), -1) << "one free byte is not enough";
    EXPECT_EQ(std::string(memory, 4), std::string("ab\0x", 4));
}

TEST(ZylBufTest, CopiesBytes) {
    char memory[8] = "abcdef";
    ZylWriteBuf dest(memory, 6);
    EXPECT_EQ(dest.writeBytes(nullptr, 100), -8) << "null comes before space";
    EXPECT_EQ(dest.writeChar('z'), 0);
    EXPECT_EQ(dest.writeBytes(memory, 6), -1);
    EXPECT_EQ(dest.writeBytes(memory, 5), 0);
    EXPECT_EQ(std::string(memory, 6), "zzbcde") << "source and target overlap";
    EXPECT_EQ(ZylWriteBuf().writeBytes(memory, 0), 0);

    char target[4] = "xyz";
    ZylReadBuf src("abc", 3);
    EXPECT_EQ(src.readBytes(nullptr, 100), -8);
    EXPECT_EQ(src.readBytes(target, 4), -2);
    EXPECT_STREQ(target, "xyz");
    EXPECT_EQ(src.readBytes(target, 3), 0);
    EXPECT_STREQ(target, "abc");
    EXPECT_EQ(src.readBytes(target, 1), -2);
}

// Pieces of every size take every path of the short copy and comparison, at the very end of the room.
TEST(ZylBufTest, PrintsOnlyWhatFitsWithItsTerminator) {
    std::string piece;
    for (size_t size = 1; size < 40; ++size) {
        piece += static_cast<char>('a' + size % 26);
        for (bool joined : {false, true}) {
            std::vector<char> memory(2 * size + 1);
            const auto print = [&](ZylWriteBuf& dest) {
                return joined ? dest.join(piece, "", piece) : dest.textize("%s%s", piece.c_str(), piece.c_str());
            };
            ZylWriteBuf exact(memory.data(), 2 * size);
            EXPECT_EQ(print(exact), -1) << "the terminator needs a place";
            EXPECT_EQ(exact.position, 0u);
            ZylWriteBuf dest(memory.data(), memory.size());
            EXPECT_EQ(print(dest), 0);
            EXPECT_EQ(dest.position, 2 * size);
            EXPECT_EQ(std::string(memory.data()), piece + piece);
        }
        EXPECT_TRUE(IsSameText(piece.data(), std::string(piece).data(), size));
        for (size_t i = 0; i < size; ++i) {
            std::string other = piece;
            other[i] = '!';
            EXPECT_FALSE(IsSameText(piece.data(), other.data(), size)) << i;
        }
    }
    EXPECT_EQ(ZylWriteBuf().textize("%s", ""), -1);
}

TEST(ZylBufTest, PrintsHex) {
    char text[8];
    unsigned long used = 99;
    ZylReadBuf src("\x00\x9F\xE0", 3);
    EXPECT_EQ(src.toHexStr(text, 6, &used), -1);
    EXPECT_EQ(used, 99u);
    EXPECT_EQ(src.toHexStr(text, 7, &used), 0);
    EXPECT_STREQ(text, "009FE0");
    EXPECT_EQ(used, 7u);
    EXPECT_EQ(src.position, 0u);
    src.position = 3;
    EXPECT_EQ(src.toHexStr(text, 0, nullptr), -1);
    EXPECT_EQ(src.toHexStr(text, 1, &used), 0);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(used, 1u);
}

TEST(ZylBufTest, ReadsHex) {
    char memory[4] = {};
    ZylReadBuf buffer(memory, 4);
    const auto read = [&buffer](const std::string& text, int code, unsigned long expectedUse, size_t length) {
        unsigned long used = 99;
        EXPECT_EQ(buffer.fromHexStr(text.data(), text.size(), &used), code) << text;
        EXPECT_EQ(used, expectedUse) << text;
        EXPECT_EQ(buffer.length, length) << text;
    };
    read("0aB", -17, 99, 4);
    read("0G", -18, 0, 4);
    read("7aG0", -18, 4, 4);  // twice the characters taken
    EXPECT_EQ(memory[0], 0x7A) << "what stands before the fault stays written";
    for (const char* fault : {"/0", ":0", "@0", "G0", "`0", "g0", "0\xFF", "0 "})
        read(fault, -18, 0, 4);
    buffer.position = 1;
    read("aBcDeF9012", 0, 6, 4);  // cut to the free bytes
    EXPECT_EQ(Hex(memory, 4), "7AABCDEF");
    read("01", 0, 2, 2);
    read("", 0, 0, 1);
    EXPECT_EQ(buffer.position, 1u);
}

TEST(ZylBufDeathTest, BrokenContractsEndTheProcess) {
    char memory[8] = {};
    ZylWriteBuf dest(memory, 4);
    ZylReadBuf src(memory, 4);
    dest.position = src.position = 5;
    const char* const text = "Assertion failed: \\(position <= length\\)";
    EXPECT_DEATH(dest.writeInt64(1), text);
    EXPECT_DEATH(src.fromHexStr("0", 1, nullptr), text);
}

}  // namespace
}  // namespace Quern
