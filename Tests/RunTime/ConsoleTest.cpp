

#include "Orvane/RunTime.h"
#include "Support/Test.h"

namespace {

constexpr char kHead[] = "[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{3} \\[[0-9]+\\] ";

TEST(Console, WritesTheTimeTheProcessAndTheText) {
    testing::internal::CaptureStderr();
    orvane_console_log("number %d of %s", 7, "nine");
    EXPECT_THAT(testing::internal::GetCapturedStderr(), MatchesRegex(std::string(kHead) + "number 7 of nine\n"));
    testing::internal::CaptureStderr();
    orvane_console_write("text\n", 5);
    orvane_console_write(nullptr, 3);
    orvane_console_log(nullptr);
    EXPECT_THAT(testing::internal::GetCapturedStderr(), MatchesRegex(std::string(kHead) + "text\n" + kHead + "\n"));
}

TEST(Console, ALongTextIsWrittenWhole) {
    for (const size_t length : {1023u, 1024u, 1025u, 100000u}) {
        testing::internal::CaptureStderr();
        orvane_console_log("%s", std::string(length, 'x').c_str());
        const std::string line = testing::internal::GetCapturedStderr();
        EXPECT_EQ(std::count(line.begin(), line.end(), 'x'), static_cast<long>(length));
        EXPECT_EQ(line.back(), '\n');
    }
}

// A pipe takes the line in pieces, and the reader gets it whole, whether or not the pipe lets its writer wait; errno is
// the caller's.
TEST(Console, AShortWriteGoesOn) {
    for (const int flags : {0, O_NONBLOCK}) {
        int ends[2];
        ASSERT_EQ(pipe2(ends, flags), 0);
        fcntl(ends[0], F_SETFL, 0);
        const int saved = dup(STDERR_FILENO);
        dup2(ends[1], STDERR_FILENO);
        close(ends[1]);
        std::string got;
        std::thread reader([&] {
            char piece[777];
            for (ssize_t count; (count = read(ends[0], piece, sizeof piece)) > 0;)
                got.append(piece, count);
        });
        errno = EDOM;
        orvane_console_write(std::string(300000, 'y').c_str(), 300000);
        EXPECT_EQ(errno, EDOM);
        dup2(saved, STDERR_FILENO);
        reader.join();
        close(ends[0]);
        close(saved);
        EXPECT_EQ(std::count(got.begin(), got.end(), 'y'), 300000);
        EXPECT_EQ(got.back(), '\n');
    }
}

// Nobody reads: one wait for all, not one a line.
TEST(Console, WaitsForAStuckConsoleOnce) {
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_NONBLOCK), 0);
    while (write(ends[1], "x", 1) == 1)
        continue;
    const int saved = dup(STDERR_FILENO);
    dup2(ends[1], STDERR_FILENO);
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < 20; ++i)
        orvane_console_write("text", 4);
    const auto took = std::chrono::steady_clock::now() - begin;
    dup2(saved, STDERR_FILENO);
    for (const int descriptor : {ends[0], ends[1], saved})
        close(descriptor);
    EXPECT_LT(took, std::chrono::seconds(5));
}

}  // namespace
