#include "Base/Container/AData.h"

#include "Support/Test.h"

namespace {

using Quern::AData;

std::string Bytes(const AData& data) {
    return {reinterpret_cast<const char*>(data.Data()), static_cast<size_t>(data.Size())};
}

const unsigned char* Raw(const std::string& bytes) {
    return reinterpret_cast<const unsigned char*>(bytes.data());
}

void Append(AData& data, const std::string& bytes) {
    data.Append(Raw(bytes), static_cast<int>(bytes.size()));
}

TEST(AData, AlwaysKeepsAZeroBehindTheData) {
    AData data;
    EXPECT_EQ(data.Data(), nullptr);
    EXPECT_EQ(data.Capacity(), 64);
    std::string all;
    // Through the edges of the first buffer and of its doublings.
    for (int i = 0; i < 600; ++i) {
        const std::string piece(1, static_cast<char>('a' + i % 26));
        Append(data, piece);
        all += piece;
        ASSERT_EQ(data.Data()[data.Size()], 0) << data.Size();
        ASSERT_GT(data.Capacity(), data.Size());
    }
    EXPECT_EQ(Bytes(data), all);

    AData exact;
    Append(exact, std::string(63, 'x'));
    EXPECT_EQ(exact.Capacity(), 64);
    Append(exact, "y");  // leaves no room for the terminator, so the buffer grows
    EXPECT_EQ(exact.Capacity(), 128);
    EXPECT_EQ(exact.LeftSize(), 64);
}

TEST(AData, CapacityGrowsWithTheBytesAndShrinksWithout) {
    AData data(100);
    EXPECT_EQ(data.Capacity(), 100);
    EXPECT_EQ(AData(-5).Capacity(), 64);
    data.Append("abc");
    data.SetCapacity(0);
    data.SetCapacity(-1);
    data.SetCapacity(100);
    data.SetCapacity(200);
    EXPECT_EQ(Bytes(data), "abc");
    for (int i = data.Size(); i < data.Capacity(); ++i)
        ASSERT_EQ(data.Data()[i], 0);
    data.SetCapacity(150);
    EXPECT_TRUE(data.Empty());
    EXPECT_EQ(data.Capacity(), 150);
    EXPECT_EQ(data.Data()[0], 0);
    data.Clear();
    EXPECT_EQ(data.Data(), nullptr);
    EXPECT_EQ(data.Capacity(), 64);
}

TEST(AData, AssignReusesABufferThatIsNotFarTooLarge) {
    AData data(100);
    data.Append("something longer");
    data.Assign(Raw("ab"), 2);
    EXPECT_EQ(data.Capacity(), 100);
    EXPECT_STREQ(reinterpret_cast<char*>(data.Data()), "ab");
    EXPECT_EQ(data.Data()[5], 0);  // no remains of the old content

    const struct {
        int capacity, length, after;
    } rows[] = {{1000, 2, 64}, {1000, 600, 1000}, {1000, 499, 998}, {128, 2, 128}, {129, 2, 64}};
    for (const auto& row : rows) {
        AData reused(row.capacity);
        reused.Append("old");
        const std::string bytes(static_cast<size_t>(row.length), 'h');
        reused.Assign(Raw(bytes), row.length);
        EXPECT_EQ(reused.Capacity(), row.after) << row.capacity << ' ' << row.length;
        EXPECT_EQ(Bytes(reused), bytes);
    }

    data = nullptr;
    EXPECT_EQ(data.Data(), nullptr);
}

TEST(AData, TakesItsOwnBytesAsASource) {
    AData data;
    Append(data, std::string(40, 'p') + "q");
    data.Append(data);  // grows while it reads
    EXPECT_EQ(Bytes(data), std::string(40, 'p') + "q" + std::string(40, 'p') + "q");
    data.Append(data.Data() + 40, 1);
    EXPECT_EQ(data.Data()[82], 'q');
    data.Assign(data.Data(), 3);
    EXPECT_EQ(data.Size(), 83);
    data.Assign(data.Data() + 40, 2);
    EXPECT_EQ(Bytes(data), "qp");
}

TEST(AData, IgnoresWhatItCannotHold) {
    AData data;
    data.Append(nullptr, 4);
    data.Append(static_cast<const char*>(nullptr));
    data.Append(Raw("abc"), -1);
    EXPECT_EQ(data.Data(), nullptr);
    data.Append("abc");
    data.Append(Raw("x"), INT_MAX - 3);  // with its terminator it would pass a 32-bit size; the source is not read
    EXPECT_EQ(Bytes(data), "abc");
}

TEST(AData, ComparesFindsAndCopiesBytes) {
    const AData empty;
    AData data;
    Append(data, std::string("a\0b", 3));
    EXPECT_TRUE(empty.IsEqual(&empty));
    EXPECT_FALSE(data.IsEqual(&empty));
    EXPECT_FALSE(data.IsEqual(nullptr));
    const AData copy = data;
    EXPECT_TRUE(copy.IsEqual(&data));
    EXPECT_NE(copy.Data(), data.Data());
    EXPECT_EQ(data.Find('b'), 2);
    EXPECT_EQ(data.Find(0), 1);
    EXPECT_EQ(data.Find('z'), -1);
    EXPECT_EQ(empty.Find(0), -1);
    data.SetOwned(true);
    const std::unique_ptr<AData> clone(data.Clone());
    EXPECT_TRUE(clone->IsEqual(&data));
    EXPECT_FALSE(clone->IsOwned());
}

}  // namespace
