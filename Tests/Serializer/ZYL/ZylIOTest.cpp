#include "Serializer/ZYL/ZylIO.h"

#include "Support/Test.h"

#include <charconv>

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

TEST(ZylOutStreamTest, APlaceThatTakesLessIsAnError) {
    for (Step step : kSteps) {
        char memory[2] = {'?', '?'};
        ZylOutStream small(memory, 1);
        EXPECT_EQ(step(small), -1);
        EXPECT_EQ(small.state(), -1);
        EXPECT_EQ(memory[1], '?');
        EXPECT_EQ(small.buffer().position, 0u);

        FILE* const full = fopen("/dev/full", "wb");
        ASSERT_NE(full, nullptr);
        setvbuf(full, nullptr, _IONBF, 0);
        ZylOutStream stream(full);
        EXPECT_EQ(step(stream), -25);
        EXPECT_EQ(stream.state(), -25);
        fclose(full);
    }
}

TEST(ZylOutStreamDeathTest, CallersMustLookAtTheState) {
    char memory[2];
    ZylOutStream stream(memory, sizeof memory);
    ASSERT_EQ(stream.textize("ab"), -1);
    for (Step step : kSteps)
        EXPECT_DEATH(step(stream), "Assertion failed: \\(ZylError::ZYL_NO_ERROR == _state\\)");
}

}  // namespace
}  // namespace Quern
