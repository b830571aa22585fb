// What the end of a process leaves of its log, told step by step where the crash test draws at random.

#include "Support/Container.h"
#include "Support/LoadCheck.h"
#include "Support/Process.h"
#include "Support/Test.h"

namespace EndToEnd {
namespace {

// Logs a line through the file event, whose lines are acknowledged.
void Log(const Container& container, Process& host, const std::string& line) {
    WriteFile(container.Outside() / "lines", line + "\n");
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
    const std::string texts = container.ReadTexts("Game");
    EXPECT_THAT(texts, ContainsRegex("in front\n(.*\n)*next\n(.*\n)*last\n"));
    EXPECT_THAT(texts, Not(HasSubstr("held back")));
}

}  // namespace
}  // namespace EndToEnd
