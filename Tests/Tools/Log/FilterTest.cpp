#include "Log/Filter.h"

#include "Log/Arguments.h"
#include "Log/TimeArgument.h"
#include "Support/LogWriter.h"
#include "Support/Test.h"

namespace OrvaneLog {
namespace {

using OrvaneTest::NumberedLine;

const std::string kDebug = "[2026-11-24 21:00:00 000] | Debug | [Pell] |1| a.cpp:1|f| quiet";
const std::string kError = "[2026-11-24 22:30:00 500] | Error | [Ravel] |1| b.cpp:2|g| took 15 ms\nback trace";
const std::string kLoss = "[F][ sg_buffer_async.Length() >= BUFFER_BLOCK_LENTH*4/5, len: 122900";
const std::string kTip = "----------- begin of mmap -----------";

// Which of some entries pass the filter, one behind the other.
std::string Passing(const FilterOptions& options, const std::string& module = "") {
    Filter filter(options, module);
    std::string passing;
    for (const auto& [name, whole] :
         {std::pair("tip ", kTip), {"error ", kError}, {"loss ", kLoss}, {"debug ", kDebug}, {"loss again ", kLoss}})
        if (filter.Accepts(MakeEntry(whole))) passing += name;
    return passing;
}

TEST(Filter, ByLevelModuleAndTime) {
    FilterOptions all, level, modules, time;
    EXPECT_TRUE(all.IsEmpty());
    EXPECT_EQ(Passing(all), "tip error loss debug loss again ");
    level.minimumLevel = 4;
    EXPECT_EQ(Passing(level), "error loss loss again ") << "lost lines are an error";
    modules.modules = {"Sample", "Ravel"};
    EXPECT_EQ(Passing(modules, "Pell"), "error ");
    EXPECT_EQ(Passing(modules, "Ravel"), "tip error loss loss again ")
        << "what tells no module goes by the file's name";
    time.since = 20261124220000000;
    time.until = 20261124223000500;
    EXPECT_EQ(Passing(time), "error loss ") << "the end is included, and what tells no time goes by the line before it";
}

TEST(Pattern, FindsExpressionsAndPlainText) {
    std::string error;
    const auto found = [&error](const std::string& expression, const std::string& text) {
        const auto pattern = Pattern::Compile(expression, error);
        return pattern && pattern->IsFoundIn(text);
    };
    // What an expression demands is found whatever stands around it.
    for (const char* matches : {"took", "took \\d+ ms$", "^back", "(o)\\1k", "tooo*k", "tooz?k", "took.{1,9}ms",
                                "x*took", "took|never", "(never)?took", "[t]ook 1", "\\x74ook", "to{2}k", "\\btook\\b",
                                "took\\s15", "15 ms\\nback", "\\[Ravel\\]", "(?=took)took 15"})
        EXPECT_TRUE(found(matches, kError)) << matches;
    for (const char* differs :
         {"^took", "Took", "too?k\\d", "took 16", "took.{9,}ms$", "[u]ook", "\\x75ook", "never?took"})
        EXPECT_FALSE(found(differs, kError)) << differs;
    for (const char* wrong : {"(", "[a", "a{2", "*", "\\"}) {
        error.clear();
        EXPECT_EQ(Pattern::Compile(wrong, error), nullptr) << wrong;
        EXPECT_FALSE(error.empty()) << wrong;
    }
    // Neither a long text nor a nasty expression may end the program.
    EXPECT_FALSE(found("(x+x+)+y", std::string(400, 'x')));
    EXPECT_FALSE(found("a.*y", "a" + std::string(100000, 'x')));
    EXPECT_FALSE(found("(x|x)*\\1y", std::string(12, 'x')));
}

TEST(TimeArgument, ReadsWhatPeopleWrite) {
    setenv("TZ", "UTC", 1);
    tzset();
    const time_t now = 1795557039;  // 2026-11-24 21:50:39
    const std::pair<const char*, LocalStamp> good[] = {
        {"2026-11-24 21:50", 20261124215000000},
        {"2026-11-24 21:50:39", 20261124215039000},
        {"2026-11-24T21:50", 20261124215000000},
        {"2026-11-24 21:50:39 641", 20261124215039641},
        {"[2026-11-24 21:50:39 641]", 20261124215039641},
        {"2026-11-24T21:50:39.641", 20261124215039641},
        {"2024-02-29", 20240229000000000},
        {"09:05", 20261124090500000},
        {"09:05:07", 20261124090507000},
        {"-10m", 20261124214039000},
        {"-2h", 20261124195039000},
        {"-1d", 20261123215039000},
        {"-39s", 20261124215000000},
    };
    for (const auto& [text, expected] : good) {
        LocalStamp stamp = 0;
        EXPECT_TRUE(ParseTimeArgument(text, now, stamp)) << text;
        EXPECT_EQ(stamp, expected) << text;
    }
    for (const char* wrong : {"", "-", "-m", "-10", "-10w", "-1.5h", "--5m", "-99999999999999999999s", "2026-13-01",
                              "2026-02-29", "2026-11-24 24:00", "21:60", "9:05", "now", "2026-11-24 21", "21:50:39:00",
                              "2026-11-24 641", "2026-11-24 21:50:39 64", "[]"}) {
        LocalStamp stamp = 0;
        EXPECT_FALSE(ParseTimeArgument(wrong, now, stamp)) << wrong;
    }
}

TEST(Arguments, RefusesWhatMakesNoSense) {
    const auto complaint = [](const std::string& line) {
        std::istringstream words(line);
        Arguments arguments;
        std::string error;
        const std::vector<std::string> split{std::istream_iterator<std::string>(words), {}};
        const bool isTaken = ParseArguments(split, 1000000000, arguments, error);
        EXPECT_EQ(isTaken, error.empty());
        return error;
    };
    for (const char* good :
         {"--key a --key=b --level warning --since -10m -n 5 x.xlog -", "x --verify", "--keygen", "--keygen file"})
        EXPECT_EQ(complaint(good), "") << good;
    for (const char* wrong :
         {"", "--level loud x", "--level 5 x", "--since noon x", "--grep ( x", "--lines -1 x", "--color=green x",
          "--records --verify x", "--follow -", "--keygen a b", "--key", "--nonsense x"})
        EXPECT_NE(complaint(wrong), "") << wrong;
}

}  // namespace
}  // namespace OrvaneLog
