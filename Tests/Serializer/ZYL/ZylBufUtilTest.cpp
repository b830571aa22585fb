#include "Serializer/ZYL/ZylBufUtil.h"

#include "Serializer/ZYL/ZylTime.h"
#include "Serializer/ZYL/ZylTypeUtil.h"
#include "Support/Test.h"

namespace Quern {
namespace {

using Util = ZylBufUtil;

TEST(ZylBufUtilTest, PrintsLinesToTheByte) {
    unsigned ip = 0;
    ASSERT_EQ(ZylTypeUtil::str2ZylIP(ip, "1.2.3.4"), 0);
    const ZylDate date(2024, 3, 5);
    const ZylTime time(-7, 8, 9);
    const ZylDateTime both(date, time);
    const unsigned short wide[] = {0x41, 0xFFFF, 0};
    using Print = std::function<int(ZylWriteBuf&)>;
    const std::pair<Print, std::string> lines[] = {
        {[](auto& d) { return Util::printVariable(d, 0, '\n', "a", true); }, "a\n"},
        {[](auto& d) { return Util::printVariable(d, 2, ';', "a", false); }, "        a: "},
        {[](auto& d) { return Util::printVariable(d, 1, ';', "a", 7u, true); }, "    a[7];"},
        {[](auto& d) { return Util::printVariable(d, -3, ';', "a", UINT_MAX, false); }, "a[4294967295]: "},
        {[](auto& d) { return Util::printVariable(d, 1, '\n', "a", "%d/%s", -5, "x"); }, "    a: -5/x\n"},
        {[](auto& d) { return Util::printVariable(d, 0, ',', "a", 3u, "%04x", 0xABu); }, "a[3]: 00ab,"},
        {[](auto& d) { return Util::printArray(d, 1, '\n', "list", 5); }, "    list[0 : 4]:"},
        {[](auto& d) { return Util::printArray(d, 0, '\n', "list", 0); }, "list[0 : -1]:"},
        {[](auto& d) { return Util::printArray(d, 0, '\n', "l", LLONG_MIN); }, "l[0 : 9223372036854775807]:"},
        {[](auto& d) { return Util::printString(d, 1, '\n', "s", "a%sb"); }, "    s: a%sb\n"},
        {[](auto& d) { return Util::printString(d, 0, ' ', "s", 0u, ""); }, "s[0]:  "},
        {[&](auto& d) { return Util::printWString(d, 0, '\n', "w", wide); }, "w:  0x0041 0xffff 0x0000\n"},
        {[&](auto& d) { return Util::printWString(d, 1, '\n', "w", 2u, wide + 2); }, "    w[2]:  0x0000\n"},
        {[&](auto& d) { return Util::printZylIP(d, 1, '\n', "ip", ip); }, "    ip: 1.2.3.4\n"},
        {[&](auto& d) { return Util::printZylIP(d, 0, '\n', "ip", 1u, ip); }, "ip[1]: 1.2.3.4\n"},
        {[&](auto& d) { return Util::printZylTime(d, 0, '\n', "t", time); }, "t: -7:08:09\n"},
        {[&](auto& d) { return Util::printZylTime(d, 0, '\n', "t", 2u, time); }, "t[2]: -7:08:09\n"},
        {[&](auto& d) { return Util::printZylDate(d, 0, '\n', "d", date); }, "d: 2024-03-05\n"},
        {[&](auto& d) { return Util::printZylDate(d, 0, '\n', "d", 3u, date); }, "d[3]: 2024-03-05\n"},
        {[&](auto& d) { return Util::printZylDateTime(d, 0, '\n', "b", both); }, "b: 2024-03-05 -7:08:09\n"},
        {[&](auto& d) { return Util::printZylDateTime(d, 0, '\n', "b", 4u, both); }, "b[4]: 2024-03-05 -7:08:09\n"},
    };
    for (const auto& [print, text] : lines) {
        for (size_t size = 0; size <= text.size() + 1; ++size) {
            char memory[64];
            ZylWriteBuf dest(memory, size);
            EXPECT_EQ(print(dest), size > text.size() ? 0 : -1) << text << size;
            EXPECT_TRUE(size <= text.size() || (text == memory && dest.position == text.size())) << text << memory;
        }
    }
}

TEST(ZylBufUtilTest, NullTextsAreErrorsAndNullNamesAssertions) {
    char memory[32];
    ZylWriteBuf dest(memory, sizeof memory);
    EXPECT_EQ(Util::printString(dest, 0, '\n', "s", nullptr), -8);
    EXPECT_EQ(Util::printWString(dest, 0, '\n', "s", 1u, nullptr), -8);
    EXPECT_DEATH(Util::printVariable(dest, 0, '\n', nullptr, true), "NULL != variable");
}

}  // namespace
}  // namespace Quern
