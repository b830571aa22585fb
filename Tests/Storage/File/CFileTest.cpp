#include "Storage/File/CFile.h"

#include "Storage/File/GetLine.h"
#include "Support/Test.h"

namespace {

using namespace OrvaneTest;
using Quern::AString;
using Quern::CFile;

std::string PathOf(const char* name) {
    return CacheFolder() + "/" + name;
}

std::string ReadAll(CFile& file, int64_t offset = 0) {
    char bytes[256];
    const int count = file.Read(bytes, offset, sizeof bytes);
    return count < 0 ? "failed" : std::string(bytes, static_cast<size_t>(count));
}

TEST(CFile, OpensByMode) {
    const std::string path = PathOf("modes");
    CFile file;
    EXPECT_FALSE(file.Open(nullptr, Quern::kFileCreate));
    EXPECT_FALSE(file.Open(path.c_str(), Quern::kFileRead));
    EXPECT_FALSE(file.Exist());
    WriteFile(path, "content");
    EXPECT_FALSE(file.Exist());  // the path was kept, but no stream is open
    ASSERT_TRUE(file.Open(path.c_str(), static_cast<Quern::FileMode>(99)));
    EXPECT_TRUE(file.Exist());
    EXPECT_FALSE(file.Open(nullptr, Quern::kFileRead));  // which leaves the open file alone
    EXPECT_EQ(ReadAll(file), "content");
    EXPECT_FALSE(file.Write("x", 1));
    ASSERT_TRUE(file.Open(path.c_str(), Quern::kFileAppend));
    EXPECT_EQ(ReadAll(file, 3), "tent");
    ASSERT_TRUE(file.Open(path.c_str(), Quern::kFileWriteOnly));
    EXPECT_EQ(ReadFile(path), "");
    EXPECT_EQ(ReadAll(file), "failed");
    for (const auto mode : {Quern::kFileCreate, Quern::kFileRecreate}) {
        WriteFile(path, "content");
        ASSERT_TRUE(file.Open(path.c_str(), mode));
        EXPECT_TRUE(file.Write("new", 3));
        EXPECT_EQ(ReadAll(file), "new");
    }
    EXPECT_TRUE(file.Remove());
    EXPECT_FALSE(file.Exist());
    EXPECT_EQ(ReadAll(file), "new");  // removed, yet still open
    EXPECT_FALSE(file.Remove());
    WriteFile(path, "again");
    EXPECT_TRUE(CFile::Rename(path.c_str(), PathOf("moved").c_str()));
    EXPECT_FALSE(CFile::Exist(path.c_str()));
    EXPECT_FALSE(CFile::IsDir(PathOf("moved").c_str()));
}

TEST(CFile, WriteOverwritesTheStartAndReachesTheDisk) {
    const std::string path = PathOf("write");
    CFile file;
    ASSERT_TRUE(file.Open(path.c_str(), Quern::kFileCreate));
    EXPECT_TRUE(file.Write("first text", 10));
    EXPECT_EQ(ReadFile(path), "first text");
    EXPECT_TRUE(file.Write("SECON", 5));
    EXPECT_EQ(ReadFile(path), "SECON text");
    EXPECT_TRUE(file.Write("ignored", 0));
    EXPECT_FALSE(file.Write(nullptr, 3));
    ASSERT_TRUE(file.Open("/dev/full", Quern::kFileWriteOnly));
    EXPECT_FALSE(file.Write("lost", 4));
}

TEST(CFile, AppendsWithoutFlushing) {
    const std::string path = PathOf("append");
    for (const auto mode : {Quern::kFileAppend, Quern::kFileCreate}) {
        CFile file;
        ASSERT_TRUE(file.Open(path.c_str(), mode));
        EXPECT_FALSE(file.Append("0123456789", 10));  // written nevertheless
        EXPECT_TRUE(file.Append("x", 1));
        EXPECT_TRUE(file.Append("ignored", 0));
        EXPECT_FALSE(file.Append(nullptr, 1));
        if (mode == Quern::kFileAppend) {
            EXPECT_EQ(ReadFile(path), "");
        }
        EXPECT_EQ(file.GetLength(), 11);
        EXPECT_EQ(ReadAll(file), "0123456789x");
        file.Append("yz", 2);
        EXPECT_EQ(ReadAll(file, 10), "xyz");
        file.Close();
        EXPECT_FALSE(file.Append("x", 1));
        EXPECT_EQ(ReadFile(path), "0123456789xyz");
        CFile::Remove(path.c_str());
    }
}

TEST(CFile, MixesReadsWritesAndAppends) {
    const std::string path = PathOf("mixed");
    std::string expected;
    CFile file;
    ASSERT_TRUE(file.Open(path.c_str(), Quern::kFileAppend));
    // Every pair of operations, one behind the other, and a second writer in between.
    for (int i = 0; i < 64; ++i) {
        for (const int step : {i % 4, i / 4 % 4, i / 16}) {
            const std::string piece = std::to_string(i) + ",";
            const int length = static_cast<int>(piece.size());
            if (step == 0) {
                file.Append(piece.c_str(), length);
                expected += piece;
            } else if (step == 1) {
                EXPECT_TRUE(file.Write(piece.c_str(), length));  // in append mode this, too, goes to the end
                expected += piece;
            } else if (step == 2) {
                ASSERT_EQ(ReadAll(file, static_cast<int64_t>(expected.size()) / 2),
                          expected.substr(expected.size() / 2).substr(0, 256));
            } else {
                ASSERT_EQ(file.GetLength(), static_cast<int>(expected.size()));
            }
        }
    }
    file.SeekToBegin();
    CFile other;
    ASSERT_TRUE(other.Open(path.c_str(), Quern::kFileAppend));
    other.Append("other", 5);
    other.Close();
    file.Append("end", 3);
    EXPECT_EQ(file.GetLength(), static_cast<int>(expected.size()) + 8);
    file.Close();
    EXPECT_EQ(ReadFile(path), expected + "otherend");
}

TEST(CFile, SeeksAndReadsAnywhere) {
    const std::string path = PathOf("seek");
    WriteFile(path, "0123456789");
    CFile file;
    EXPECT_EQ(file.Seek(3, Quern::kFromBegin), 0);
    EXPECT_EQ(file.SeekToEnd(), 0);
    EXPECT_EQ(file.GetLength(), 0);
    char byte;
    EXPECT_EQ(file.Read(&byte, 0), -1);
    ASSERT_TRUE(file.Open(path.c_str(), Quern::kFileRead));
    EXPECT_EQ(file.Read(nullptr, 1), -1);
    EXPECT_EQ(file.Read(&byte, 0), 0);
    EXPECT_EQ(file.Read(&byte, -1, 1), 0);
    EXPECT_EQ(file.Read(&byte, 10, 1), 0);
    EXPECT_EQ(ReadAll(file, 8), "89");
    EXPECT_EQ(ReadAll(file), "0123456789");  // the end of the file before is no error now
    EXPECT_EQ(file.Seek(3, Quern::kFromBegin), 3);
    EXPECT_EQ(file.GetLength(), 10);
    EXPECT_EQ(file.Seek(2, Quern::kFromCurrent), 5);  // the length left the position alone
    EXPECT_EQ(file.Seek(-1, Quern::kFromEnd), 9);
    EXPECT_EQ(file.Seek(4, static_cast<Quern::FilePosition>(7)), 4);
    EXPECT_EQ(file.Seek(-1, Quern::kFromBegin), 0);
    EXPECT_EQ(file.SeekToEnd(), 0);
    EXPECT_EQ(file.Seek(0, Quern::kFromCurrent), 10);
}

TEST(CFile, HandlesFilesBeyond32Bits) {
    const std::string path = PathOf("large");
    WriteFile(path, "");
    const int64_t size = (int64_t{1} << 32) + 10;
    ASSERT_EQ(truncate(path.c_str(), size), 0);  // takes no room on the disk
    CFile file;
    ASSERT_TRUE(file.Open(path.c_str(), Quern::kFileAppend));
    EXPECT_EQ(file.GetLength(), INT_MAX);
    file.Append("end", 3);
    EXPECT_EQ(file.GetLength(), INT_MAX);
    EXPECT_EQ(ReadAll(file, size), "end");
    EXPECT_EQ(file.Seek(0, Quern::kFromEnd), size + 3);
}

TEST(GetLine, EndsLinesAtEitherCharacter) {
    const std::string path = PathOf("lines");
    const std::string longLine(5000, 'l');
    WriteFile(path, "one\r\n\ntwo\rthree" + std::string(1, '\0') + "x\n" + longLine + "\nlast without an end");
    FILE* file = fopen(path.c_str(), "rb");
    ASSERT_NE(file, nullptr);
    AString line("before");
    const auto next = [&] {
        const int length = Quern::getline(file, line);
        return length < 0 ? std::string("end") : std::string(line.c_str(), static_cast<size_t>(length));
    };
    EXPECT_EQ(next(), "one");
    EXPECT_EQ(next(), "");
    EXPECT_TRUE(line.Empty());
    EXPECT_EQ(next(), "");
    EXPECT_EQ(next(), "two");
    EXPECT_EQ(next(), std::string("three\0x", 7));
    EXPECT_EQ(next(), longLine);
    EXPECT_EQ(next(), "end");
    EXPECT_EQ(line.length(), 5000);  // untouched
    fclose(file);
}

}  // namespace
