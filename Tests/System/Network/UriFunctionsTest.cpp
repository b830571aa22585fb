#include "Base/Container/AString.h"
#include "Orvane/OrvaneCore.h"
#include "Support/Test.h"

namespace {

using Quern::AString;

std::string Bytes(const AString& text) {
    return std::string(text.data(), static_cast<size_t>(text.length()));
}

TEST(UriFunctions, TellNotationsApart) {
    const struct {
        const char* text;
        bool isIPv4, isIPv6;
    } kTexts[] = {{nullptr, false, false},   {"", true, false},      {"1.2.3.4:80", true, false},
                  {"1.2.3.4:", true, false}, {"1:2:3", false, true}, {"[", false, true},
                  {"host", false, false},    {"a:b:c", false, true}, {"999", true, false},
                  {"1.2.3.x", false, false}};
    for (const auto& [text, isIPv4, isIPv6] : kTexts) {
        EXPECT_EQ(IsNumericIPv4Notation(text), isIPv4) << (text ? text : "null");
        EXPECT_EQ(IsNumericIPv6Notation(text), isIPv6) << (text ? text : "null");
    }
}

TEST(UriFunctions, SplitAndConvert) {
    using std::string;
    const struct {
        const char* text;
        bool isGood;
        string scheme, host;
        unsigned short port;
        string converted;
    } kTexts[] = {
        {"1.2.3.4:80", true, "old", "1.2.3.4", 80, "[64::ff9b:1.2.3.4]:80"},
        {"1.2.3.4", true, "old", "1.2.3.4", 0, "64::ff9b:1.2.3.4"},
        {"http://1.2.3.4:80", true, "http", "1.2.3.4", 80, "http://[64::ff9b:1.2.3.4]:80"},
        {"http://1.2.3.4", true, "http", "1.2.3.4", 0, "http://64::ff9b:1.2.3.4"},
        {"://1.2.3.4", true, "", "1.2.3.4", 0, "64::ff9b:1.2.3.4"},
        {"", true, "old", "", 0, "64::ff9b:"},
        {":80", true, "old", "", 80, "[64::ff9b:]:80"},
        {"host:80", true, "old", "host", 80, "host:80"},
        {"a://b://c", true, "a", "b", 0, "a://b://c"},
        {"host:65616x", true, "old", "host", 80, "host:65616x"},
        {"host: -1", true, "old", "host", 65535, "host: -1"},
        {"http://[fe80::1]:443", true, "http", string("fe80::1\0", 8), 443, "http://[fe80::1]:443"},
        {"[1.2.3.4]:80", true, "old", string("1.2.3.4\0", 8), 80, string("[64::ff9b:1.2.3.4\0]:80", 22)},
        {"fe80::1", true, "old", "fe80::1", 0, "fe80::1"},
        {"[fe80::1]", false, "old", string("fe80::1\0", 8), 7, "old"},
        {"[fe80::1]x", false, "old", string("fe80::1\0", 8), 7, "old"},
        {"x://[fe80::1", false, "x", "old", 7, "old"},
        {nullptr, false, "old", "old", 7, "old"},
    };
    for (const auto& row : kTexts) {
        SCOPED_TRACE(row.text ? row.text : "null");
        AString scheme = "old", host = "old", out = "old";
        unsigned short port = 7;
        EXPECT_EQ(ParseURI(row.text, scheme, host, port), row.isGood);
        EXPECT_EQ(Bytes(scheme), row.scheme);
        EXPECT_EQ(Bytes(host), row.host);
        EXPECT_EQ(port, row.port);
        EXPECT_EQ(ConvertIpV4To6(row.text, out), row.isGood);
        EXPECT_EQ(Bytes(out), row.converted);
        out = row.text;
        EXPECT_TRUE(!row.isGood || (ConvertIpV4To6(out.c_str(), out) && Bytes(out) == row.converted)) << "in place";
    }
}

}  // namespace
