#include "Serializer/ZYL/ZylIO.h"

#include <gtest/gtest.h>
#include <stdio.h>

#include <charconv>
#include <string>

namespace Quern {
namespace {

int WriteAll(ZylOutStream& stream) {
    if (const int code = stream.textize("%s-%d ", "a", 7)) return code;
    if (const int code = stream.output("b\0c", 3)) return code;
    if (const int code = stream.join("d", "", std::string("e"))) return code;
    return stream.printShort([](char* place) { return std::to_chars(place, place + kMaxShortText, 42).ptr; });
}

TEST(ZylOutStreamTest, WritesTheSameToAFileAndToABuffer) {
    const std::string expected("a-7 b\0cde42", 11);
    char memory[64];
    ZylOutStream toBuffer(memory, sizeof memory);
    EXPECT_EQ(WriteAll(toBuffer), 0);
    EXPECT_EQ(std::string(memory, toBuffer.buffer().position), expected);

    FILE* const file = tmpfile();
    ASSERT_NE(file, nullptr);
    ZylOutStream toFile(file);
    EXPECT_EQ(WriteAll(toFile), 0);
    rewind(file);
    const size_t size = fread(memory, 1, sizeof memory, file);
    fclose(file);
    EXPECT_EQ(std::string(memory, size), expected);
    EXPECT_EQ(toFile.state(), 0);
}

TEST(ZylOutStreamTest, ABufferTakesAllOfAPrintOrNothing) {
    for (size_t size = 0; size <= 12; ++size) {
        char memory[16] = {};
        ZylOutStream stream(memory, size);
        const int code = WriteAll(stream);
        EXPECT_EQ(code, size < 12 ? -1 : 0) << size;
        EXPECT_EQ(stream.state(), code);
        for (size_t i = size; i < sizeof memory; ++i)
            EXPECT_EQ(memory[i], '\0') << "past the end";
    }
    ZylOutStream bytes(nullptr, 10);
    EXPECT_EQ(bytes.output("a", 1), -1);
    ZylOutStream noFile(static_cast<FILE*>(nullptr));
    EXPECT_EQ(noFile.state(), 0);
    EXPECT_EQ(noFile.textize("a"), -1);
}

TEST(ZylOutStreamTest, AFileThatTakesLessIsAnError) {
    char byte[] = "x";
    const auto failing = [](auto write) {
        FILE* const full = fopen("/dev/full", "wb");
        ASSERT_NE(full, nullptr);
        setvbuf(full, nullptr, _IONBF, 0);
        ZylOutStream stream(full);
        EXPECT_EQ(write(stream), -25);
        EXPECT_EQ(stream.state(), -25);
        fclose(full);
    };
    failing([&](ZylOutStream& stream) { return stream.output(byte, 1); });
    failing([](ZylOutStream& stream) { return stream.textize("%d", 1); });
    failing([](ZylOutStream& stream) { return stream.join("a", "b"); });
    failing([](ZylOutStream& stream) {
        return stream.printShort([](char* place) {
            *place = 'a';
            return place + 1;
        });
    });
}

// A format that the compiler does not look at.
int PrintUnchecked(ZylOutStream& stream, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int code = stream.vtextize(format, arguments);
    va_end(arguments);
    return code;
}

TEST(ZylOutStreamDeathTest, CallersMustLookAtTheState) {
    char memory[2];
    ZylOutStream stream(memory, sizeof memory);
    EXPECT_DEATH(stream.output(nullptr, 0), "NULL != data");
    EXPECT_DEATH(PrintUnchecked(stream, nullptr), "NULL != format");
    ASSERT_EQ(stream.textize("ab"), -1);
    const char* const text = "Assertion failed: \\(ZylError::ZYL_NO_ERROR == _state\\)";
    EXPECT_DEATH(stream.textize("a"), text);
    EXPECT_DEATH(stream.output("a", 1), text);
    EXPECT_DEATH(stream.join("a"), text);
}

}  // namespace
}  // namespace Quern
