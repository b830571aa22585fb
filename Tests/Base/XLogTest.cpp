#include "Base/XLog.h"

#include <ctime>
#include <regex>

#include "Base/ConsoleSink.h"
#include "Base/LocalClock.h"
#include "Support/Test.h"

namespace Quern {
namespace {

std::string Format(const char* file, const char* text, const char* module = "Module") {
    char out[kLogLineCapacity];
    const size_t length = XLogFormat(out, kLogEvent, file, 7, "Function", module, text);
    EXPECT_EQ(strlen(out), length);
    return out;
}

TEST(XLogFormat, TellsTimeLevelModuleThreadAndPlace) {
    const time_t before = time(nullptr);
    const std::string line = Format("/a/b/c.cpp", "the text");
    const time_t after = time(nullptr);
    const std::regex pattern(
        R"(\[([-0-9]+ [:0-9]+) \d{3}\] \| Event \| \[Module\] \|(\d+)\| c\.cpp:7\|Function\| the text)");
    std::smatch match;
    ASSERT_TRUE(std::regex_match(line, match, pattern)) << line;
    tm local{};
    ASSERT_TRUE(strptime(match[1].str().c_str(), "%Y-%m-%d %H:%M:%S", &local));
    local.tm_isdst = -1;
    const time_t told = mktime(&local);
    EXPECT_LE(before, told);
    EXPECT_LE(told, after);
    EXPECT_EQ(stol(match[2]), gettid());
}

TEST(XLogFormat, CutsThePathAtItsLastSeparatorOfOneKind) {
    EXPECT_NE(Format("a/b\\c", "t").find("| c:7|"), std::string::npos);
    EXPECT_NE(Format("a\\b/c", "t").find("| b/c:7|"), std::string::npos) << "the backslash wins";
    EXPECT_NE(Format("plain", "t").find("| plain:7|"), std::string::npos);
    EXPECT_NE(Format("folder/", "t").find("| :7|"), std::string::npos);
    EXPECT_NE(Format(nullptr, nullptr, nullptr).find("[(null)]"), std::string::npos);
}

TEST(XLogFormat, CutsALineAtItsCapacityWhereverThatFalls) {
    const size_t head = Format("f", "").size();
    EXPECT_EQ(Format("f", std::string(4095 - head, 'x').c_str()).size(), 4095u);
    EXPECT_EQ(Format("f", std::string(5000, 'x').c_str()).size(), 4095u);
    EXPECT_EQ(Format(std::string(5000, 'x').c_str(), "t").size(), 4095u);
    EXPECT_EQ(Format("f", "t", std::string(5000, 'x').c_str()).size(), 4095u);
}

TEST(LocalClock, FollowsTheZoneWhileTheProcessRuns) {
    constexpr time_t kNoon = 1767268800;  // in UTC
    setenv("TZ", "UTC0", 1);
    EXPECT_EQ(LocalTime(kNoon).tm_hour, 12);
    setenv("TZ", "EAST-9", 1);
    EXPECT_EQ(LocalTime(kNoon + 1).tm_hour, 21);
}

TEST(XLog, AnUnknownLevelHasAWordToo) {
    for (const int other : {-1, 5, 6, 7, 1000})
        EXPECT_STREQ(GetQuernLogLevelString(other), "Unkonwn");
}

// A line goes from the log to the console as it is: nothing is copied, so nothing can fail.
TEST(PrintLogToConsole, HandsTheTextOn) {
    struct Sink final : ConsoleSink {
        void Write(const char* text, size_t length) override {
            at = text;
            got.assign(text, length);
        }
        const char* at = nullptr;
        std::string got;
    };
    const auto sink = std::make_shared<Sink>();
    ConsoleSink::Use(sink);
    const std::string line(4095, 'x');
    PrintLogToConsole(kLogInfo, "Module", line.c_str());
    EXPECT_EQ(sink->at, line.c_str());
    EXPECT_EQ(sink->got, line);
    PrintLogToConsole(kLogInfo, "Module", "%d\n");
    EXPECT_EQ(sink->got, "%d\n\n") << "the console takes one of them for its own";
    PrintLogToConsole(kLogInfo, "Module", "");
    EXPECT_EQ(sink->got, "");
    ConsoleSink::Use(nullptr);
}

}  // namespace
}  // namespace Quern
