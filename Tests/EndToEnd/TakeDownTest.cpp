// The host takes the base library down under load, on either queue, and goes on.
#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <regex>

#include "Support/Container.h"
#include "Support/Process.h"

namespace EndToEnd {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// What the host says of its operations on an occasion.
struct Tally {
    int ran = -1;
    int queued = -1;
    int repetitions = -1;
};

Tally ReadTally(const std::string& said, const std::string& occasion) {
    const std::regex line(occasion + ": ([0-9]+) of ([0-9]+) operations ran, ([0-9]+) repetitions");
    Tally tally;
    for (std::sregex_iterator at(said.begin(), said.end(), line), end; at != end; ++at)
        tally = {std::stoi((*at)[1]), std::stoi((*at)[2]), std::stoi((*at)[3])};
    return tally;
}

// The stages that the host's observer heard.
std::vector<std::string> StagesIn(const std::string& said) {
    const std::string mark = "HostStages ";
    std::vector<std::string> stages;
    for (const std::string& line : SplitLines(said)) {
        const size_t at = line.find(mark);
        if (at != std::string::npos) stages.push_back(line.substr(at + mark.size()));
    }
    return stages;
}

class TakeDownTest : public testing::TestWithParam<const char*> {
protected:
    bool IsPool() const { return GetParam() == std::string("2"); }
    Command Host(std::vector<std::string> arguments = {}) const {
        const std::string manifest = _container.Outside() / "Info.plist";
        WriteWholeFile(manifest, std::string("<plist version=\"1.0\"><dict><key>Orvane</key><dict><key>GameId</key>"
                                             "<string>1007</string></dict><key>OrvaneCore</key><dict>"
                                             "<key>OperationMode</key><integer>") +
                                     GetParam() + "</integer></dict></dict></plist>");
        arguments.insert(arguments.end(), {"--info-plist", manifest});
        return _container.Host(arguments);
    }
    // The threads of the process whose kernel name begins with that.
    static int CountThreads(const Process& process, const std::string& name) {
        int count = 0;
        const std::filesystem::path tasks = "/proc/" + std::to_string(process.Id()) + "/task";
        for (const auto& task : std::filesystem::directory_iterator(tasks))
            count += ReadWholeFile(task.path() / "comm").starts_with(name);
        return count;
    }
    int CountQueueThreads(const Process& process) const {
        return CountThreads(process, IsPool() ? "OrvThreadPool-" : "OperationQueue.");
    }

    Container _container;
};

TEST_P(TakeDownTest, EndsTheQueueUnderLoad) {
    Process host(Host());
    host.Send("launch\noperations 20\n");
    ASSERT_TRUE(host.WaitForError("all of 20 operations ran")) << host.Error();
    host.Send("operations 600\nsleep 100\nrelease\n");
    ASSERT_TRUE(host.WaitForError("released: ")) << host.Error();
    if (IsPool()) {
        EXPECT_EQ(CountQueueThreads(host), 0);
    }
    host.Send("sleep 500\nquit\n");
    EXPECT_EQ(host.Wait().exitStatus, 0) << host.Error();

    const Tally released = ReadTally(host.Error(), "released"), end = ReadTally(host.Error(), "at the end");
    EXPECT_EQ(released.queued, 620) << host.Error();
    EXPECT_GT(released.repetitions, 0);
    if (IsPool()) {
        EXPECT_EQ(released.ran, 620) << "the queue runs what it holds before it goes";
        EXPECT_EQ(end.ran, 620);
        EXPECT_EQ(end.repetitions, released.repetitions);
    } else {
        EXPECT_LT(released.ran, 620) << "the queue drops what it holds";
        EXPECT_LE(end.ran + end.repetitions, released.ran + released.repetitions + 3) << "each worker ends its run";
    }
}

TEST_P(TakeDownTest, LoadsAndLaunchesAgain) {
    Process host(Host({"--module", "Game", "--log-mode", "0"}));
    int queued = 0;
    for (const int count : {21, 22, 23}) {
        const std::string number = std::to_string(count);
        host.Send("init\nlaunch\nlog info round " + number + "\noperations " + number + "\nresume\n");
        ASSERT_TRUE(host.WaitForError("all of " + number + " operations ran")) << host.Error();
        EXPECT_GE(CountQueueThreads(host), 3);
        host.Send("release\ncreate\n");
        queued += count;
        ASSERT_TRUE(host.WaitForError("released: " + std::to_string(queued) + " of ")) << host.Error();
        if (IsPool()) {
            EXPECT_EQ(CountQueueThreads(host), 0);
        }
    }
    host.CloseInput();
    EXPECT_EQ(host.Wait().exitStatus, 0) << host.Error();
    std::vector<std::string> texts;
    EXPECT_THAT(StagesIn(host.Error()),
                ElementsAre("OnResume", "OnCreate", "OnResume", "OnCreate", "OnResume", "OnCreate"));
    for (const std::string& line : _container.ReadLog("Game"))
        texts.push_back(TextOfLogLine(line));
    EXPECT_THAT(texts, ElementsAre("round 21", "round 22", "round 23"));
}

TEST(StagesTest, ReachNativeObserversAndNoEventOfTheDelegateDoes) {
    const Container container;
    Process host(container.Host({}));
    host.Send("background\nforeground\ncreate\nstart\npause\nresume\nstop\ndestroy\noperations none\n");
    host.CloseInput();
    EXPECT_EQ(host.Wait().exitStatus, 1) << "for the number that is none";
    EXPECT_THAT(StagesIn(host.Error()),
                ElementsAre("OnCreate", "OnStart", "OnPause", "OnResume", "OnStop", "OnDestroy"));
    EXPECT_THAT(host.Error(), HasSubstr("cannot queue none operations"));
}

INSTANTIATE_TEST_SUITE_P(Modes, TakeDownTest, testing::Values("1", "2"),
                         [](const auto& mode) { return mode.param == std::string("2") ? "Pool" : "Threaded"; });

}  // namespace
}  // namespace EndToEnd
