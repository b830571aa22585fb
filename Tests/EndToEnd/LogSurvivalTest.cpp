// What survives the end of the process, told step by step where the crash test draws at random.
#include <gmock/gmock.h>
#include <signal.h>

#include "Storage/Log/LogRecord.h"
#include "Support/Container.h"
#include "Support/LoadCheck.h"
#include "Support/Process.h"

namespace EndToEnd {
namespace {

using testing::ElementsAre;

constexpr char kModule[] = "Game";
constexpr char kBegin[] = "----------- begin of mmap -----------";
constexpr char kEnd[] = "----------- end of mmap -----------";

class LogSurvivalTest : public testing::Test {
protected:
    // Logs the lines through the file event, whose lines are acknowledged.
    void Log(Process& host, const std::vector<std::string>& lines) {
        std::string content;
        for (const std::string& line : lines)
            content += line + "\n";
        const std::string name = "lines" + std::to_string(++_files);
        WriteWholeFile(_container.Outside() / name, content);
        _logged += lines.size();
        host.Send("log-file " + name + "\n");
        ASSERT_TRUE(host.WaitForAcknowledged([this](const std::string& all) { return CountLines(all) >= _logged; }))
            << host.Error();
    }

    std::unique_ptr<Process> Start(const std::string& mode = "2") {
        _logged = 0;
        auto host = std::make_unique<Process>(_container.Host({"--ack-fd", "3", "--log-mode", mode}));
        host->Send("launch\n");
        return host;
    }

    void Kill(Process& host) {
        host.Signal(SIGKILL);
        ASSERT_EQ(host.Wait().signal, SIGKILL);
    }

    std::vector<std::string> Texts() {
        std::vector<std::string> texts;
        for (const std::string& line : _container.ReadLog(kModule))
            texts.push_back(TextOfLogLine(line));
        return texts;
    }

    // Without the last line of all if that is "last", which may still be in the block.
    std::vector<std::string> TextsWithoutTips() {
        std::vector<std::string> texts = Texts();
        std::erase_if(texts, [](const std::string& text) { return text == kBegin || text == kEnd || text == "last"; });
        return texts;
    }

    // The payload in the block of the mapped file.
    uint32_t BlockLength() {
        const std::string file = ReadWholeFile(_container.MappedFile(kModule));
        if (file.size() < Quern::LogRecord::kHeaderLength) return 0;
        return Quern::LogRecord::LoadU32(reinterpret_cast<const uint8_t*>(file.data()) + Quern::LogRecord::kLenAt);
    }

    Container _container;
    int _files = 0;
    uint64_t _logged = 0;
};

TEST_F(LogSurvivalTest, BringsTheBlockBackBetweenTwoTips) {
    const std::vector<std::string> lines = {"one", "", "three | with bars and a long tail " + std::string(3000, 'x'),
                                            "last"};
    for (const char* mode : {"1", "2"}) {
        SCOPED_TRACE(mode);
        std::filesystem::remove_all(_container.Home());
        {
            const auto host = Start(mode);
            Log(*host, lines);
            Kill(*host);
        }
        // The flush thread's first turn may have taken the lines to the file already.
        const bool isLeftOver = BlockLength() > 0;
        const auto host = Start(mode);
        Log(*host, {"next"});
        std::vector<std::string> texts = Texts();
        if (!texts.empty() && texts.back() == "next") texts.pop_back();
        std::vector<std::string> expected = lines;
        if (isLeftOver) {
            expected.push_back(kEnd);
            const auto begin = std::find(texts.begin(), texts.end(), kBegin);
            ASSERT_NE(begin, texts.end()) << testing::PrintToString(texts);
            texts.erase(begin);
        }
        EXPECT_EQ(texts, expected);
    }
}

TEST_F(LogSurvivalTest, LosesWhatWaitsInTheBackgroundAndNothingElse) {
    {
        const auto host = Start();
        Log(*host, {"in front"});
        host->Send("resign-active\nbackground\n");
        Log(*host, {"held back"});
        Kill(*host);
    }
    const auto host = Start();
    Log(*host, {"next"});
    Kill(*host);
    Log(*Start(), {"last"});
    EXPECT_EQ(TextsWithoutTips(), (std::vector<std::string>{"in front", "next"}));
}

TEST_F(LogSurvivalTest, LetsThoseThatWaitedGoFirstUpToAThousand) {
    std::vector<std::string> held;
    for (int i = 0; i < 1005; ++i)
        held.push_back("held " + std::to_string(i));
    {
        const auto host = Start();
        Log(*host, {"in front"});
        host->Send("background\n");
        Log(*host, held);
        host->Send("foreground\nactive\n");
        Log(*host, {"behind"});
        Kill(*host);
    }
    Log(*Start(), {"last"});
    std::vector<std::string> expected(held.begin(), held.begin() + 1000);
    expected.insert(expected.begin(), "in front");
    expected.push_back("behind");
    EXPECT_EQ(TextsWithoutTips(), expected);
}

TEST_F(LogSurvivalTest, WritesPlainTextToTheEndOnAnOrderlyStop) {
    const auto host = Start("0");
    Log(*host, {"one", "two"});
    host->Signal(SIGTERM);
    EXPECT_EQ(host->Wait().exitStatus, 0) << host->Error();
    const std::string file = ReadWholeFile(_container.LogFiles(kModule).at(0));
    std::vector<std::string> texts;
    for (const std::string& line : SplitLines(file))
        texts.push_back(TextOfLogLine(line));
    EXPECT_THAT(texts, ElementsAre("one", "two"));
}

}  // namespace
}  // namespace EndToEnd
