// The host takes the base library down under load, on either queue, and goes on.

#include "Support/Container.h"
#include "Support/Process.h"
#include "Support/Test.h"

namespace EndToEnd {
namespace {

// The stages that the host's observer heard.
std::string StagesIn(const std::string& said) {
    const std::string mark = "HostStages ";
    std::string stages;
    for (const std::string& line : OrvaneTest::LinesWith(mark, said))
        stages += line.substr(line.find(mark) + mark.size()) + " ";
    return stages;
}

class TakeDownTest : public testing::TestWithParam<const char*> {
protected:
    bool IsPool() const { return GetParam() == std::string("2"); }
    Command Host(std::vector<std::string> arguments = {}) const {
        const std::string manifest = _container.Outside() / "Info.plist";
        WriteFile(manifest, std::string("<plist version=\"1.0\"><dict><key>Orvane</key><dict><key>GameId</key>"
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
            count += ReadFile(task.path() / "comm").starts_with(name);
        return count;
    }
    int CountQueueThreads(const Process& process) const {
        return CountThreads(process, IsPool() ? "OrvThreadPool-" : "OperationQueue.");
    }

    Container _container;
};

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
    EXPECT_EQ(host.Wait().status, 0) << host.Error();
    EXPECT_EQ(StagesIn(host.Error()), "OnResume OnCreate OnResume OnCreate OnResume OnCreate ");
    EXPECT_EQ(_container.ReadTexts("Game"), "round 21\nround 22\nround 23\n");
}

INSTANTIATE_TEST_SUITE_P(Modes, TakeDownTest, testing::Values("1", "2"),
                         [](const auto& mode) { return mode.param == std::string("2") ? "Pool" : "Threaded"; });

}  // namespace
}  // namespace EndToEnd
