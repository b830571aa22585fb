#include "Serializer/ZYL/ZylIO.h"

#include <gtest/gtest.h>
#include <stdio.h>

#include <charconv>
#include <string>

namespace Quern {
namespace {

using Step = int (*)(ZylOutStream&);
constexpr Step kSteps[] = {
    [](ZylOutStream& stream) { return stream.textize("%s-%d ", "a", 7); },
    [](ZylOutStream& stream) { return stream.output("b\0c", 3); },
    [](ZylOutStream& stream) { return stream.join("d", "", std::string("e")); },
    [](ZylOutStream& stream) {
        return stream.printShort([](char* place) { return std::to_chars(place, place + kMaxShortText, 42).ptr; });
    },
};

int WriteAll(ZylOutStream& stream) {
    for (Step step : kSteps) {
        if (const int code = step(stream)) return code;
    }
    return 0;
}

TEST(ZylOutStreamTest, WritesTheSameToAFileAndToABuffer) {
    const std::string expected("a-7 b\0cde42", 11);
    for (size_t size = 0; size <= 12; ++size) {
        char memory[16] = {};
        ZylOutStream stream(memory, size);
        const int code = WriteAll(stream);
        EXPECT_EQ(code, size < 12 ? -1 : 0) << size;
        EXPECT_EQ(stream.state(), code);
        EXPECT_EQ(std::string(memory + size, sizeof memory - size), std::string(sizeof memory - size, '\0'));
        EXPECT_EQ(std::string(memory, stream.buffer().position), expected.substr(0, stream.buffer().position));
    }
    FILE* const file = tmpfile();
    ASSERT_NE(file, nullptr);
    ZylOutStream toFile(file);
    EXPECT_EQ(WriteAll(toFile), 0);
    rewind(file);
    char memory[64];
    const size_t size = fread(memory, 1, sizeof memory, file);
    fclose(file);
    EXPECT_EQ(std::string(memory, size), expected);
    EXPECT_EQ(ZylOutStream(static_cast<FILE*>(nullptr)).textize("a"), -1) << "a null file is an empty buffer";
}

TEST(ZylOutStreamTest, AFileThatTakesLessIsAnError) {
    for (Step step : kSteps) {
        FILE* const full = fopen("/dev/full", "wb");
        ASSERT_NE(full, nullptr);
        setvbuf(full, nullptr, _IONBF, 0);
        ZylOutStream stream(full);
        EXPECT_EQ(step(stream), -25);
        EXPECT_EQ(stream.state(), -25);
        fclose(full);
    }
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
    for (Step step : kSteps)
        EXPECT_DEATH(step(stream), "Assertion failed: \\(ZylError::ZYL_NO_ERROR == _state\\)");
}

}  // namespace
}  // namespace Quern
