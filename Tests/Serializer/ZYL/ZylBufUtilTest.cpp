#include "Serializer/ZYL/ZylBufUtil.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "Serializer/ZYL/ZylTime.h"
#include "Serializer/ZYL/ZylTypeUtil.h"

namespace Quern {
namespace {

using Util = ZylBufUtil;

// The text of one print, which must fail with -1 in every buffer that is too small for it.
template <typename Print>
std::string Text(const Print& print) {
    char memory[256];
    ZylWriteBuf dest(memory, sizeof memory);
    EXPECT_EQ(print(dest), 0);
    EXPECT_EQ(memory[dest.position], '\0');
    const std::string text(memory, dest.position);
    for (size_t size = 0; size <= text.size(); ++size) {
        ZylWriteBuf small(memory, size);
        EXPECT_EQ(print(small), -1) << size;
    }
    return text;
}

TEST(ZylBufUtilTest, NamesAndFormattedValues) {
    EXPECT_EQ(Text([](auto& d) { return Util::printVariable(d, 0, '\n', "a", true); }), "a\n");
    EXPECT_EQ(Text([](auto& d) { return Util::printVariable(d, 2, ';', "a", false); }), "        a: ");
    EXPECT_EQ(Text([](auto& d) { return Util::printVariable(d, 1, ';', "a", 7u, true); }), "    a[7];");
    EXPECT_EQ(Text([](auto& d) { return Util::printVariable(d, -3, ';', "a", UINT_MAX, false); }), "a[4294967295]: ");
    EXPECT_EQ(Text([](auto& d) { return Util::printVariable(d, 1, '\n', "a", "%d/%s", -5, "x"); }), "    a: -5/x\n");
    EXPECT_EQ(Text([](auto& d) { return Util::printVariable(d, 0, ',', "a", 3u, "%04x", 0xABu); }), "a[3]: 00ab,");
    EXPECT_EQ(Text([](auto& d) { return Util::printArray(d, 1, '\n', "list", 5); }), "    list[0 : 4]:");
    EXPECT_EQ(Text([](auto& d) { return Util::printArray(d, 0, '\n', "list", 0); }), "list[0 : -1]:");
    EXPECT_EQ(Text([](auto& d) { return Util::printArray(d, 0, '\n', "list", LLONG_MIN); }),
              "list[0 : 9223372036854775807]:");
}

TEST(ZylBufUtilTest, Texts) {
    EXPECT_EQ(Text([](auto& d) { return Util::printString(d, 1, '\n', "s", "a%sb"); }), "    s: a%sb\n");
    EXPECT_EQ(Text([](auto& d) { return Util::printString(d, 0, ' ', "s", 0u, ""); }), "s[0]:  ");
    const unsigned short wide[] = {0x41, 0xFFFF, 0};
    EXPECT_EQ(Text([&](auto& d) { return Util::printWString(d, 0, '\n', "w", wide); }), "w:  0x0041 0xffff 0x0000\n");
    EXPECT_EQ(Text([&](auto& d) { return Util::printWString(d, 1, '\n', "w", 2u, wide + 2); }), "    w[2]:  0x0000\n");

    char memory[32];
    ZylWriteBuf dest(memory, sizeof memory);
    EXPECT_EQ(Util::printString(dest, 0, '\n', "s", nullptr), -8);
    EXPECT_EQ(Util::printWString(dest, 0, '\n', "s", 1u, nullptr), -8);
}

TEST(ZylBufUtilTest, PackedValues) {
    unsigned ip = 0;
    ASSERT_EQ(ZylTypeUtil::str2ZylIP(ip, "1.2.3.4"), 0);
    const ZylDate date(2024, 3, 5);
    const ZylTime time(-7, 8, 9);
    EXPECT_EQ(Text([&](auto& d) { return Util::printZylIP(d, 1, '\n', "ip", ip); }), "    ip: 1.2.3.4\n");
    EXPECT_EQ(Text([&](auto& d) { return Util::printZylIP(d, 0, '\n', "ip", 1u, ip); }), "ip[1]: 1.2.3.4\n");
    EXPECT_EQ(Text([&](auto& d) { return Util::printZylTime(d, 0, '\n', "t", time); }), "t: -7:08:09\n");
    EXPECT_EQ(Text([&](auto& d) { return Util::printZylTime(d, 0, '\n', "t", 2u, time); }), "t[2]: -7:08:09\n");
    EXPECT_EQ(Text([&](auto& d) { return Util::printZylDate(d, 0, '\n', "d", date); }), "d: 2024-03-05\n");
    EXPECT_EQ(Text([&](auto& d) { return Util::printZylDate(d, 0, '\n', "d", 3u, date); }), "d[3]: 2024-03-05\n");
    const ZylDateTime both(date, time);
    EXPECT_EQ(Text([&](auto& d) { return Util::printZylDateTime(d, 0, '\n', "b", both); }), "b: 2024-03-05 -7:08:09\n");
    EXPECT_EQ(Text([&](auto& d) { return Util::printZylDateTime(d, 0, '\n', "b", 4u, both); }),
              "b[4]: 2024-03-05 -7:08:09\n");
}

TEST(ZylBufUtilDeathTest, ANullNameEndsTheProcess) {
    char memory[32];
    ZylWriteBuf dest(memory, sizeof memory);
    EXPECT_DEATH(Util::printVariable(dest, 0, '\n', nullptr, true), "NULL != variable");
    EXPECT_DEATH(Util::printArray(dest, 0, '\n', nullptr, 1), "NULL != variable");
    EXPECT_DEATH(Util::printZylIP(dest, 0, '\n', nullptr, 1u), "NULL != variable");
}

}  // namespace
}  // namespace Quern
