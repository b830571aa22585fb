#include "Serializer/Codec/Md5.h"

#include "Support/Test.h"

namespace Quern {
namespace {

std::string Hex(const char* digest) {
    char text[33];
    Md5HexString(reinterpret_cast<unsigned char*>(const_cast<char*>(digest)), text);
    return text;
}

std::string HashOf(const std::string& data) {
    char digest[16];
    Md5HashBuffer(digest, data.data(), static_cast<int>(data.size()));
    return Hex(digest);
}

std::string HashOfFile(const std::string& data) {
    const OrvaneTest::TemporaryFolder folder;
    return FileToMD5(folder.Write("data", data).c_str());
}

// Digests by another implementation, around the sizes at which the padding takes a block more.
const std::pair<size_t, const char*> kKnown[] = {
    {55, "52c0e574e1198de5fe3f8f11440dcb1b"},   {56, "46c9907fc908ee68b1e7b8e71286a518"},
    {63, "a62f6d59e837867693f042f5b8f5a236"},   {64, "7160b8fb5e9e4023d549c3971fbaeead"},
    {119, "e84905d4214f4d1ca56c2cdcc152b143"},  {120, "e3eb5a6c8669ea01a8c185b8abc8a5dc"},
    {1025, "ee57403eb3428e1a0be41fad4a70b174"}, {100000, "59f08777fcd1aa2b8e0c8f892cfaae09"},
};

TEST(Md5, BlockBoundariesInOnePieceInManyAndFromAFile) {
    for (const auto& [size, known] : kKnown) {
        SCOPED_TRACE(size);
        std::string data(size, '\0');
        for (size_t i = 0; i < data.size(); ++i)
            data[i] = static_cast<char>(i * 7 + 3);
        EXPECT_EQ(HashOf(data), known);

        MD5_CTX context;
        MD5Init(&context);
        unsigned char* at = reinterpret_cast<unsigned char*>(data.data());
        unsigned char* const end = at + data.size();
        for (unsigned int piece = 1; at < end; piece = piece * 5 % 131) {
            const unsigned int length = std::min(piece, static_cast<unsigned int>(end - at));
            MD5Update(&context, at, length);
            at += length;
        }
        char digest[16];
        MD5Final(reinterpret_cast<unsigned char*>(digest), &context);
        EXPECT_EQ(Hex(digest), known);

        EXPECT_EQ(HashOfFile(data), known);
    }
}

TEST(Md5, BitCountCarriesIntoItsHighWordAndTheStateIsWiped) {
    MD5_CTX context;
    MD5Init(&context);
    context.count[0] = 0xFFFFFFF8u;  // as after 2^29 - 1 bytes
    unsigned char two[2] = {1, 2};
    MD5Update(&context, two, 2);
    EXPECT_EQ(context.count[0], 8u);
    EXPECT_EQ(context.count[1], 1u);

    unsigned char digest[16];
    MD5Final(digest, &context);
    const MD5_CTX wiped = {};
    EXPECT_EQ(memcmp(&context, &wiped, sizeof context), 0);
}

TEST(Md5, AFileThatCannotBeOpenedLeavesTheDigest) {
    char digest[16];
    memset(digest, 0x5A, sizeof digest);
    Md5File(digest, "/no/such/file");
    EXPECT_EQ(std::string(digest, sizeof digest), std::string(16, 0x5A));
    EXPECT_EQ(FileToMD5("/no/such/file").size(), 32u);
    EXPECT_EQ(HashOfFile(""), "d41d8cd98f00b204e9800998ecf8427e");
}

}  // namespace
}  // namespace Quern
