#include "Base/Container/AStringBuilder.h"
#include "Serializer/Arbor/ArborBufferBuffer.h"
#include "Serializer/Arbor/ArborBufferReader.h"
#include "Serializer/Arbor/ArborBufferWriter.h"
#include "Support/Test.h"

namespace Quern {
namespace {

AString Bytes(const std::string& bytes) {
    return {bytes.data(), static_cast<int>(bytes.size())};
}

std::string Hex(const AString& bytes) {
    return bytes.Dump("").c_str();
}

// An object with a field of each plain kind.
class Player : public _tagArborActionBufferBase {
public:
    explicit Player(int number = 7) : _tagArborActionBufferBase(number) {}

    Player* Clone() const override { return new Player(*this); }
    void WriteTo(CArborBufferWriter& writer) const override {
        writer.Write(name);
        writer.Write(score);
        writer.Write(isOnline);
        writer.Write(rank);
        writer.Write(friends);
    }
    void ReadFrom(CArborBufferReader& reader) override {
        reader.Read(name);
        reader.Read(score);
        reader.Read(isOnline);
        reader.Read(rank);
        reader.Read<AString>(friends);
    }

    AString name;
    long long score = 0;
    bool isOnline = false;
    unsigned char rank = 0;
    AArray friends;
};

const char kPlayerHex[] =
    "00,00,00,07,"
    "00,00,00,02,61,62,"
    "ff,ff,ff,ff,ff,ff,ff,fe,"
    "01,"
    "fd,"
    "00,00,00,02,00,00,00,01,63,00,00,00,00";

Player SamplePlayer() {
    Player player;
    player.name = "ab";
    player.score = -2;
    player.isOnline = true;
    player.rank = 0xFD;
    player.friends.Add("c");
    player.friends.Add("");
    return player;
}

TEST(ArborBufferWriter, WritesEachKindToTheByte) {
    AArray mixed;
    mixed.Add(ANumber(true));
    mixed.Add(ANumber(static_cast<unsigned char>(9)));
    mixed.Add(ANumber(10));
    mixed.Add(ANumber(11LL));
    mixed.Add(ANumber(1.5));  // these four count, and have no bytes
    mixed.Add(ANumber());
    mixed.Add(AData(4));
    mixed.Add(AStringBuilder("x"));
    AArray nested;
    nested.Add(Player(3));
    mixed.Add(nested);

    // In the order of insertion, wherever the objects lie in memory; an equal key by pointer is a second entry.
    ADictionary dictionary;
    for (const char* key : {"z", "a", "m"})
        dictionary.Set(key, ANumber(1));
    AString twice("a");
    ANumber second(2);
    dictionary.Set(static_cast<AObject*>(&twice), &second);

    using Write = std::function<void(CArborBufferWriter&)>;
    const std::pair<Write, const char*> cases[] = {
        {[](auto& writer) { writer.Write(INT_MIN); }, "80,00,00,00"},
        {[](auto& writer) { writer.Write(0x01020304); }, "01,02,03,04"},
        {[](auto& writer) { writer.Write(1LL); }, "00,00,00,00,00,00,00,01"},
        {[](auto& writer) { writer.Write(true); }, "01"},
        {[](auto& writer) { writer.Write(""); }, "00,00,00,00"},
        {[](auto& writer) { writer.Write(Bytes(std::string("a\0b", 3))); }, "00,00,00,03,61,00,62"},
        {[](auto& writer) { writer.Write(AArray()); }, "00,00,00,00"},
        {[&](auto& writer) { writer.Write(&mixed); },
         "00,00,00,09,01,09,00,00,00,0a,00,00,00,00,00,00,00,0b,00,00,00,01,"
         "00,00,00,03,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00"},
        {[](auto& writer) { writer.Write(SamplePlayer()); }, kPlayerHex},
        {[](auto& writer) { writer.Write(static_cast<const AObject*>(nullptr)); }, ""},
        {[](auto& writer) { writer.Write(static_cast<const _tagArborBufferBase*>(nullptr)); }, ""},
    };
    for (const auto& [write, hex] : cases) {
        CArborBufferWriter writer;
        write(writer);
        EXPECT_EQ(Hex(writer.GetBufferData()), hex);
    }

    CArborBufferWriter writer;
    writer.Write(dictionary);
    std::string text = Hex(writer);
    const std::string head = "00,00,00,04,00,00,00,01,7a,00,00,00,01,", tail = ",00,00,00,01,6d,00,00,00,01";
    ASSERT_EQ(text.size(), 3 * (4 + 4 * 9) - 1u);
    EXPECT_EQ(text.substr(0, head.size()), head);
    EXPECT_EQ(text.substr(text.size() - tail.size()), tail);
    EXPECT_NE(text.find("00,00,00,01,61,00,00,00,01"), std::string::npos);
    EXPECT_NE(text.find("00,00,00,01,61,00,00,00,02"), std::string::npos);
}

// Whatever is cut off, each field is either whole or neutral, and nothing is read beyond.
TEST(ArborBufferReader, ReadsWhatThereIs) {
    AString bytes;
    ASSERT_TRUE(SamplePlayer().Encode(bytes));
    for (int length = 0; length <= bytes.length() + 3; ++length) {
        SCOPED_TRACE(length);
        // A block of its own, so that the address sanitizer sees the first byte too far.
        const std::string input = std::string(bytes.data(), static_cast<size_t>(bytes.length())) + "xyz";
        const std::string cut(input.data(), static_cast<size_t>(length));
        Player player(99);
        player.name = "old";
        player.score = 98;
        player.rank = 97;
        player.friends.Add("old");
        ASSERT_TRUE(player.Decode(cut.data(), length));
        EXPECT_EQ(player.action, length >= 4 ? 7 : 99);
        EXPECT_STREQ(player.name.c_str(), length >= 10 ? "ab" : "");
        EXPECT_EQ(player.isOnline, length >= 19);
        if (length < 8 || length >= 10) {
            EXPECT_EQ(player.score, length >= 18 ? -2 : 98);
            EXPECT_EQ(player.rank, length >= 20 ? 0xFD : 97);
        }
        if (length <= 24) {
            EXPECT_STREQ(player.friends.FirstCString(), "old") << "left as it was if the input ends with the count";
        } else {
            EXPECT_EQ(player.friends.Count(), length <= 29 ? 1 : 2);
            EXPECT_STREQ(player.friends.FirstCString(), length >= 29 ? "c" : "");
        }
    }
}

TEST(ArborBufferReader, BelievesNoLengthAndNoCount) {
    for (const char* hostile : {"\x7F\xFF\xFF\xFF", "\xFF\xFF\xFF\xFF", "\x80\0\0\0", "\0\0\0\x05", "\0\0\0\0"}) {
        const AString input = Bytes(std::string(hostile, 4) + "abcd");
        AString text = "old";
        CArborBufferReader reader(input);
        reader.Read(text);
        EXPECT_TRUE(text.Empty());
        EXPECT_EQ(reader.GetPosition(), 4) << "behind the length";
    }
    // What follows a count: at most that many elements, and none without input.
    const std::string most = "\x7F\xFF\xFF\xFF", negative = "\xFF\xFF\xFF\xFE", one("\0\0\0\x01", 4),
                      two("\0\0\0\x02", 4);
    const std::string a = one + "a", empty(4, '\0');
    struct Case {
        std::string input;
        int count;
        const char* first;
    };
    for (const Case& known : {Case{most, 1, "old"}, Case{empty, 1, "old"}, Case{"\0\0", 1, "old"}, Case{"", 1, "old"},
                              Case{most + a + a, 2, "a"}, Case{most + most + "a", 2, ""}, Case{most + "ab", 1, ""},
                              Case{negative + a, 0, nullptr}, Case{empty + a, 0, nullptr}, Case{two + a, 1, "a"},
                              Case{one + a + a, 1, "a"}, Case{one + empty, 1, ""}}) {
        AArray array;
        array.Add("old");
        CArborBufferReader(Bytes(known.input)).Read<AString>(array);
        EXPECT_EQ(array.Count(), known.count) << Hex(Bytes(known.input));
        EXPECT_STREQ(array.FirstCString(), known.first) << Hex(Bytes(known.input));
    }
    struct Bare : _tagArborAction {
        Bare* Clone() const override { return new Bare(*this); }
        void BeforeDecode(CArborBufferReader&) override {}
    };
    AArray bare;
    CArborBufferReader(Bytes(most + "abc")).Read<Bare>(bare);
    EXPECT_EQ(bare.Count(), 3) << "elements without bytes end as well";
    EXPECT_TRUE(CArborBufferReader(nullptr, 5).IsAtEnd());
    EXPECT_TRUE(CArborBufferReader("abc", -1).IsAtEnd());
}

TEST(ArborBufferReader, GivesBackArraysAndDictionaries) {
    AArray numbers;
    for (long long number : {LLONG_MIN, -1LL, LLONG_MAX})
        numbers.Add(ANumber(number));
    ADictionary dictionary;
    dictionary.Set("b", SamplePlayer());
    dictionary.Set("a", Player(5));
    CArborBufferWriter writer;
    writer.Write(numbers);
    writer.Write(dictionary);
    writer.Write(ADictionary());

    CArborBufferReader reader(writer);
    AArray numbersBack;
    reader.Read<long long>(numbersBack);
    ASSERT_EQ(numbersBack.Count(), 3);
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(numbersBack[i]->IsEqual(numbers[i]));
    ADictionary back;
    back.Set("old", "old");
    reader.Read<AString, Player>(back);
    EXPECT_EQ(back.Count(), 2);
    EXPECT_STREQ(back.CStringKeyAt(0), "b");
    const auto* const player = static_cast<const Player*>(back.ObjectForKey("b"));
    AString bytes;
    player->Encode(bytes);
    EXPECT_EQ(Hex(bytes), kPlayerHex);
    EXPECT_EQ(static_cast<const Player*>(back.ObjectForKey("a"))->action, 5);
    reader.Read<AString, AString>(back);
    EXPECT_TRUE(reader.IsAtEnd());
    EXPECT_EQ(back.Count(), 2) << "left as it was if the input ends with the count";

    // A raw buffer has no bytes as a field, and an empty one no copy.
    CArborBufferWriter texts;
    texts.Write(1);
    texts.Write("key");
    texts.Write(0);
    CArborBufferReader(texts).Read<AString, _tagArborBufferBuffer>(back);
    EXPECT_EQ(back.Count(), 0);
    back.Set(_tagArborBufferBuffer(), ANumber(1));
    AString value;
    back.Set(_tagArborBufferBuffer(), &value);
    EXPECT_EQ(back.Count(), 0);

    bool flag = false;
    unsigned char byte = 5;
    CArborBufferReader last("\x80", 1);
    last.Read(flag);
    last.Read(byte);
    EXPECT_TRUE(flag) << "any byte but 0";
    EXPECT_EQ(byte, 5);
}

TEST(ArborBufferBase, NeedsOneByteMoreThanTheData) {
    const Player player = SamplePlayer();
    AString bytes;
    ASSERT_TRUE(player.Encode(bytes));
    char buffer[64];
    int size = bytes.length();
    EXPECT_FALSE(player.encode(buffer, size));
    EXPECT_FALSE(player.encode(nullptr, size));
    EXPECT_EQ(size, bytes.length());
    size = bytes.length() + 1;
    EXPECT_TRUE(player.encode(buffer, size));
    EXPECT_EQ(size, bytes.length());
    EXPECT_EQ(Hex({buffer, size}), kPlayerHex);
    size = INT_MIN;
    EXPECT_FALSE(player.encode(buffer, size));
    EXPECT_FALSE(Player().Decode(nullptr, 4));

    _tagArborAction action;
    action.action = 6;
    ASSERT_TRUE(action.Encode(bytes));
    EXPECT_EQ(Hex(bytes), "00,00,00,06");
    EXPECT_FALSE(Convert(&action, nullptr));
    EXPECT_FALSE(Convert(nullptr, &action));
    EXPECT_TRUE(Convert(&player, &action)) << "nothing can tell that the fields differ";
    EXPECT_EQ(action.action, 7);
}

TEST(ArborBufferBuffer, CopiesBytesAsTheyAre) {
    _tagArborBufferBuffer buffer;
    AString out = "old";
    char target[4] = "xyz";
    int capacity = 4;
    EXPECT_FALSE(buffer.Encode(out) || buffer.Clone() || Convert(&buffer, &buffer));
    EXPECT_TRUE(buffer.encode(target, capacity));
    EXPECT_EQ(capacity, 0);
    EXPECT_FALSE(buffer.encode(target, capacity) || buffer.Decode(nullptr, 3) || buffer.Decode("abc", 0) ||
                 buffer.Decode(AString()));
    EXPECT_STREQ(out.c_str(), "old");

    ASSERT_TRUE(buffer.Decode("abc", 3));
    ASSERT_TRUE(buffer.Encode(out));
    EXPECT_STREQ(out.c_str(), "abc");
    capacity = 3;
    EXPECT_FALSE(buffer.encode(target, capacity));
    EXPECT_FALSE(buffer.encode(nullptr, capacity));
    capacity = 4;
    EXPECT_TRUE(buffer.encode(target, capacity));
    EXPECT_EQ(capacity, 3);
    EXPECT_STREQ(target, "abc");

    const std::unique_ptr<_tagArborBufferBuffer> clone(buffer.Clone());
    const std::unique_ptr<char[]> earlier(clone->data);
    ASSERT_TRUE(clone->Decode("de", 2));
    EXPECT_EQ(std::string(earlier.get(), 3), "abc") << "earlier data is not freed";
    EXPECT_EQ(std::string(clone->data, 2), "de");
    CArborBufferWriter writer;
    writer.Write(buffer);
    EXPECT_TRUE(writer.Empty()) << "no bytes as a field";
}

}  // namespace
}  // namespace Quern
