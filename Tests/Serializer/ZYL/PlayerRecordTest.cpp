// The example class as a user of the whole layer: every form, there and back.
#include "PlayerRecord.h"

#include "Serializer/ZYL/ZylTime.h"
#include "Serializer/ZYL/ZylTypeUtil.h"
#include "Support/Test.h"

namespace Example {
namespace {

using Quern::ZYL_XML_ATTRIBUTE;
using Quern::ZYL_XML_NODE;
using Quern::ZylDate;
using Quern::ZylDateTime;
using Quern::ZylTime;
using Quern::ZylXmlFormat;

constexpr unsigned long kRoom = 16384;

class Randomiser {
public:
    explicit Randomiser(unsigned seed) : _random(seed) {}

    // `forText`: only what a text can say and be read back from.
    PlayerRecord record(bool forText) {
        PlayerRecord record;
        record.uid = number<unsigned long long>();
        text(record.name, sizeof record.name, forText);
        record.level = number<int>();
        const ZylDate date =
            forText ? ZylDate(below(10000), 1 + below(12), 1 + below(28)) : ZylDate(number<unsigned>());
        const ZylTime time = forText ? ZylTime(below(24), below(60), below(60)) : ZylTime(number<unsigned>());
        record.birthday = date;
        record.played = time;
        record.lastLogin = ZylDateTime(date, time);
        record.lastIp = number<unsigned>();
        for (int i = below(static_cast<int>(PlayerRecord::kMaxTitle)); i > 0; --i)
            record.title[i - 1] = static_cast<unsigned short>(1 + below(65535));
        record.itemCount = static_cast<short>(below(PlayerRecord::kMaxItems + 1));
        for (int i = 0; i < record.itemCount; ++i) {
            PlayerItem& item = record.items[i];
            item.id = number<unsigned>();
            item.amount = number<unsigned short>();
            item.kind = number<unsigned char>();
            text(item.name, sizeof item.name, forText);
        }
        record.rating = std::ldexp(static_cast<double>(number<int>()), below(200) - 100);
        return record;
    }

private:
    int below(int limit) { return static_cast<int>(_random() % static_cast<unsigned>(limit)); }

    // Small values as often as large ones.
    template <typename Number>
    Number number() {
        return static_cast<Number>(_random() >> below(64));
    }

    // White space around a text does not come back from XML, nor do control characters.
    void text(char* target, size_t size, bool forText) {
        const int length = below(static_cast<int>(size));
        for (int i = 0; i < length; ++i)
            target[i] = static_cast<char>(forText ? 33 + below(94) + 128 * below(2) : 1 + below(255));
        target[length] = '\0';
    }

    std::mt19937_64 _random;
};

// The bytes of the binary form name every field.
std::string Packed(PlayerRecord& record, unsigned int cutVer = 0) {
    std::string bytes(kRoom, '\0');
    unsigned long used = 0;
    EXPECT_EQ(record.pack(bytes.data(), kRoom, &used, cutVer), 0);
    return bytes.substr(0, used);
}

std::string Xml(PlayerRecord& record, ZylXmlFormat format, unsigned int cutVer = 0) {
    std::string text(kRoom, '\0');
    unsigned long used = 0;
    EXPECT_EQ(record.toXmlBuffer(text.data(), kRoom, &used, format, cutVer), 0);
    return text.substr(0, used);
}

TEST(PlayerRecordTest, RandomRecordsComeBackFromEveryForm) {
    Randomiser randomiser(1);
    for (int i = 0; i < 2000; ++i) {
        PlayerRecord any = randomiser.record(false);
        const std::string bytes = Packed(any);
        PlayerRecord back = randomiser.record(false);
        unsigned long used = 0;
        ASSERT_EQ(back.unpack(bytes.data(), bytes.size(), &used, 0), 0);
        ASSERT_EQ(used, bytes.size());
        ASSERT_EQ(Packed(back), bytes);

        PlayerRecord record = randomiser.record(true);
        for (ZylXmlFormat format : {ZYL_XML_NODE, ZYL_XML_ATTRIBUTE}) {
            std::string text = Xml(record, format);
            ASSERT_EQ(back.fromXmlBuffer(text.data(), text.size(), format, 0), 0) << text;
            ASSERT_EQ(Packed(back), Packed(record)) << text;
            back = randomiser.record(true);
            ASSERT_EQ(back.fromXmlString(text.data(), format, 0), 0);
            ASSERT_EQ(Packed(back), Packed(record));
        }
        // An older version loses the newer field.
        const std::string older = Packed(record, PlayerRecord::kBaseVersion);
        ASSERT_EQ(back.unpack(older.data(), older.size(), nullptr, 0), 0);
        record.rating = 0;
        ASSERT_EQ(Packed(back), Packed(record));
        ASSERT_EQ(Xml(record, ZYL_XML_NODE, PlayerRecord::kBaseVersion).find("rating"), std::string::npos);
    }
}

TEST(PlayerRecordTest, FilesHoldTheSameXml) {
    Randomiser randomiser(3);
    const OrvaneTest::TemporaryFolder folder;
    const std::string file = folder / "record";
    const char* const path = file.c_str();
    PlayerRecord record = randomiser.record(true), back;
    for (ZylXmlFormat format : {ZYL_XML_NODE, ZYL_XML_ATTRIBUTE}) {
        ASSERT_EQ(record.toXmlFile(path, format, 0), 0);
        ASSERT_EQ(back.fromXmlFile(path, format, 0), 0);
        EXPECT_EQ(Packed(back), Packed(record));
    }
    EXPECT_EQ(back.fromXmlFile(path, ZYL_XML_NODE, 0), 0);
    EXPECT_EQ(back.uid, 0u) << "the other layout finds no values";
    EXPECT_EQ(record.fromXmlFile("/nonexistent/x", ZYL_XML_NODE, 0), -22);
    EXPECT_EQ(record.toXmlFile("/nonexistent/x", ZYL_XML_NODE, 0), -23);
    EXPECT_EQ(record.toXmlFile("/dev/full", ZYL_XML_NODE, 0), -25) << "found out by fclose";
}

TEST(PlayerRecordTest, DamageHasItsCode) {
    Randomiser randomiser(5);
    PlayerRecord record = randomiser.record(false);
    strcpy(record.name, "abc");
    record.itemCount = 0;
    const std::string good = Packed(record);
    constexpr size_t kNameSize = 4 + 8;            // behind the version and the id
    const size_t itemCount = good.size() - 8 - 2;  // before the rating
    const struct {
        size_t place;
        std::string bytes;
        int code;
    } damages[] = {
        {kNameSize, {"\0\0\0\x21", 4}, -3}, {kNameSize, {"\0\0\0\0", 4}, -4},
        {kNameSize + 4, {"ab\0", 3}, -5},  // a terminator too early
        {kNameSize + 4, "abcd", -5},       // no terminator
        {itemCount, "\xFF\xFF", -6},        {itemCount, {"\0\x09", 2}, -7},
        {0, {"\0\0\0\x01", 4}, -20},        {0, {"\0\0\0\x04", 4}, -20},
    };
    PlayerRecord back;
    for (size_t size = 0; size < good.size(); ++size)
        EXPECT_EQ(back.unpack(std::string(good, 0, size).c_str(), size, nullptr, 0), -2);
    for (const auto& damage : damages) {
        const std::string bytes = std::string(good).replace(damage.place, damage.bytes.size(), damage.bytes);
        EXPECT_EQ(back.unpack(bytes.data(), bytes.size(), nullptr, 0), damage.code);
    }
    char memory[kRoom];
    EXPECT_EQ(record.pack(nullptr, 0, nullptr, 0), -19);
    EXPECT_EQ(record.pack(memory, sizeof memory, nullptr, 1), -9);
    record.itemCount = -1;
    EXPECT_EQ(record.pack(memory, sizeof memory, nullptr, 0), -6);
    record.itemCount = PlayerRecord::kMaxItems + 1;
    EXPECT_EQ(record.toXmlBuffer(memory, sizeof memory, nullptr, ZYL_XML_NODE, 0), -7);

    std::string items;
    for (int i = 0; i <= PlayerRecord::kMaxItems; ++i)
        items += "<items/>";
    const std::pair<std::string, int> rows[] = {
        {"", 0},  // what is missing has its default
        {items, -7},
        {"<name>a text that is far too long for it</name>", -3},
        {"<level>2147483648</level>", -21},
        {"<lastIp>1.2.3</lastIp>", -12},
        {"<items><kind>SHIELD</kind></items>", 0},
        {"<items><kind>CLOAK</kind></items>", -30},
    };
    for (const auto& [fields, code] : rows) {
        const std::string text = "<PlayerRecord>" + fields + "</PlayerRecord>";
        EXPECT_EQ(back.fromXmlBuffer(text.data(), text.size(), ZYL_XML_NODE, 0), code) << text;
    }
    EXPECT_EQ(back.fromXmlBuffer("<Player/>", 9, ZYL_XML_NODE, 0), -28);
}

}  // namespace
}  // namespace Example
