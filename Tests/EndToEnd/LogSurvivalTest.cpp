// What the end of a process leaves of its log, told step by step where the crash test draws at random.
#include <signal.h>

#include "Support/Container.h"
#include "Support/LoadCheck.h"
#include "Support/Process.h"
#include "Support/Test.h"

namespace EndToEnd {
namespace {

// Logs a line through the file event, whose lines are acknowledged.
void Log(const Container& container, Process& host, const std::string& line) {
    WriteWholeFile(container.Outside() / "lines", line + "\n");
    const uint64_t before = CountLines(host.Acknowledged());
    host.Send("log-file lines\n");
    ASSERT_TRUE(host.WaitForAcknowledged([=](const std::string& all) { return CountLines(all) > before; }))
        << host.Error();
}

TEST(LogSurvivalTest, LosesWhatWaitsInTheBackgroundAndNothingElse) {
    const Container container;
    for (const std::vector<const char*>& lines : {std::vector{"in front", "held back"}, {"next"}, {"last"}}) {
        Process host(container.Host({"--ack-fd", "3"}));
        host.Send("launch\n");
        for (const char* line : lines) {
            Log(container, host, line);
            host.Send("resign-active\nbackground\n");
        }
        host.Signal(SIGKILL);
        ASSERT_EQ(host.Wait().signal, SIGKILL);
    }
    std::string texts;
    for (const std::string& line : container.ReadLog("Game"))
        texts += TextOfLogLine(line) + "|";
    EXPECT_THAT(texts, testing::MatchesRegex(".*in front\\|.*next\\|.*last\\|.*"));
    EXPECT_THAT(texts, testing::Not(testing::HasSubstr("held back")));
}

}  // namespace
}  // namespace EndToEnd
