// The examples of Docs/LogFormat.md are what they say.
#include "Serializer/Codec/Hex.h"
#include "Support/Test.h"
#include "Tools/Log/Collected.h"

namespace OrvaneLog {
namespace {

using namespace OrvaneTest;

// The bytes of the example behind a mark in the page.
std::string Example(const std::string& name) {
    std::ifstream page(std::string(ORVANE_SOURCE_DIR) + "/Docs/LogFormat.md");
    std::string line, bytes;
    while (std::getline(page, line) && line != "<!-- " + name + " -->") {
    }
    while (std::getline(page, line) && line.starts_with("    ")) {
        std::istringstream digits(line);
        for (unsigned byte; digits >> std::hex >> byte;)
            bytes += static_cast<char>(byte);
    }
    return bytes;
}

TEST(LogFormatExamples, ReadAsThePageSays) {
    const std::string line = "[2026-11-24 21:50:39 123] | Info | [Sample] |4711| Sample.cpp:7|Run| hello";
    const std::string plain = Example("plain"), compressed = Example("compressed"), encrypted = Example("encrypted");
    EXPECT_EQ(plain, PlainRecord("----------- begin of mmap -----------\n"));
    EXPECT_EQ(compressed.size(), 74u + 74u);

    Quern::CurvePrivateKey privateKey;
    for (size_t i = 0; i < privateKey.size(); ++i)
        privateKey[i] = static_cast<uint8_t>(0x0123456789abcdefu >> (56 - i % 8 * 8));
    KeyRing keys;
    ASSERT_TRUE(keys.Add(privateKey, "the page's"));
    const Collected read = WalkRecords(plain + compressed + encrypted, keys);
    EXPECT_EQ(read.Verdicts(), "sound sound sound");
    EXPECT_EQ(read.text, "----------- begin of mmap -----------\n" + line + "\n" + line + "\n");
    ASSERT_EQ(read.records.size(), 3u);
    EXPECT_EQ(read.records[1].header.length, 74u);
    EXPECT_EQ(read.records[2].header.endHour, 22);

    std::array<uint8_t, 16> tea;
    ASSERT_TRUE(Quern::HexToBuffer("e2b54e038a31993102766f2aa031a4f0", tea.data(), tea.size()));
    EXPECT_EQ(encrypted.substr(73), EncryptGroups(compressed.substr(73, 74), tea) + std::string(1, '\0'));
}

}  // namespace
}  // namespace OrvaneLog
