// What a launch says, line by line, from the loading of the library until all that it queued has run: against the texts
// in Golden/Launch. With ORVANE_WRITE_GOLDEN in the environment these are written anew, to be read before they are
// kept.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <regex>

#include "Support/Container.h"
#include "Support/Process.h"
#include "Support/WaitFor.h"

namespace EndToEnd {
namespace {

struct Case {
    const char* name;
    const char* gameId;
    const char* settings;  // of the manifest's section "OrvaneCore", behind those of all cases
    bool hasPlugins, hasAccount;
};

constexpr char kTraced[] = "<key>YarrowEnable</key><true/>";
constexpr char kTracedWithTasks[] = "<key>YarrowEnable</key><true/><key>TaskSystemEnable</key><true/>";

const Case kCases[] = {{"AllSiblings", "30045", kTracedWithTasks, true, true},
                       {"NoSibling", "30045", kTraced, false, false},
                       {"NoGameId", " ", kTraced, true, true},
                       {"NoTracing", "0", "", true, false}};

// Without what differs from run to run.
std::string Mask(std::string text, const std::string& home) {
    const std::pair<const char*, const char*> kMasks[] = {{"0x[0-9a-f]+", "<pointer>"},
                                                          {"\\b[0-9a-f]{40}\\b", "<hash>"},
                                                          {"\\d+ us\\b", "<time> us"},
                                                          {"(?:traceid|traceId|bitset):\\S+", "<trace>"},
                                                          {"(\"[tsp]id\",\"text\":\")[^\"]+", "$1<id>"},
                                                          {"\"(ts|dur)\",\"text\":\"\\d+", "\"$1\",\"text\":\"<time>"}};
    for (size_t at; (at = text.find(home)) != std::string::npos;)
        text.replace(at, home.size(), "~");
    for (const auto& [pattern, mask] : kMasks)
        text = std::regex_replace(text, std::regex(pattern), mask);
    return text;
}

// The lines of the main thread, and those of each operation of the queue, which ends by the line of its destruction.
std::string Sequences(const std::string& said, const std::string& home) {
    // Whoever comes first opens a file that is shared; how a timer's thread starts is a matter of its own.
    const std::regex others(R"(\| (\w*IniFileImpl|KeychainFile|SolidConfigReader|ThreadBase)\.cpp:|\] orvane-host: )");
    std::string main, tracing, configuration;
    std::map<std::string, std::string> operations;  // under way, by thread
    for (const std::string& line : SplitLines(said)) {
        std::smatch head;
        static const std::regex kHead(R"(^\S+ \S+ \[(\d+)\] (\[.*?\] \| (\w+) \| \[\w+\] \|(\d+)\| .*?\| )?(.*)$)");
        if (!std::regex_match(line, head, kHead) || std::regex_search(line, others)) continue;
        const std::string text = head.str(3) + (head[3].matched ? " " : "") + head.str(5) + "\n";
        if (!head[4].matched || head[4] == head[1]) {
            main += text;
            continue;
        }
        std::string& operation = operations[head[4]];
        operation += text;
        if (text.find("~ObjectOperation()") == std::string::npos) continue;
        (operation.find("onStartYarrowClient") != std::string::npos ? tracing : configuration) += operation;
        operation.clear();
    }
    return Mask(
        "== main thread\n" + main + "== onStartYarrowClient\n" + tracing + "== onStartConfigure\n" + configuration,
        home);
}

class LaunchSequence : public testing::TestWithParam<Case> {};

TEST_P(LaunchSequence, IsAsWritten) {
    const Container container;
    const std::string manifest = (container.Outside() / "Info.plist").string();
    WriteWholeFile(manifest,
                   std::string("<plist version=\"1.0\"><dict><key>Orvane</key><dict><key>GameId</key><string>") +
                       GetParam().gameId + "</string></dict><key>OrvaneCore</key><dict><key>LogConsoleOutput</key>" +
                       "<integer>1</integer>" + GetParam().settings + "</dict></dict></plist>");
    WriteWholeFile(container.Outside() / "account", "openid=someone\nchannel=7\n");
    Command command = container.Host({"--info-plist", manifest});
    if (GetParam().hasPlugins) command.words.insert(command.words.end(), {"--plugins", ORVANE_PLUGIN_FOLDER});
    if (GetParam().hasAccount) command.environment.emplace_back("RAVEL_ACCOUNT", "account");
    Process host(command);
    host.Send("launch\n");
    const std::string defaults = (container.Home() / "Library" / "UserDefaults.json").string();
    EXPECT_TRUE(OrvaneTest::WaitFor([&] {
        const std::string said = host.Error();
        const size_t first = said.find("~ObjectOperation()");
        return first != std::string::npos && said.find("~ObjectOperation()", first + 1) != std::string::npos &&
               said.find("initialize CNetwork in main queue") != std::string::npos && !ReadWholeFile(defaults).empty();
    })) << host.Error();
    host.Signal(SIGKILL);
    host.Wait();

    std::vector<std::string> events = SplitLines(ReadWholeFile(container.EventsFile()));
    std::sort(events.begin(), events.end());  // the launch's own span comes from a thread of the queue
    std::string sequences = Sequences(host.Error(), container.Home()) + "== events\n";
    for (const std::string& event : events)
        sequences += Mask(event, container.Home()) + "\n";
    sequences += "== user defaults\n" + ReadWholeFile(defaults);

    const std::string golden = std::string(ORVANE_GOLDEN_FOLDER "/Launch/") + GetParam().name + ".txt";
    if (getenv("ORVANE_WRITE_GOLDEN")) WriteWholeFile(golden, sequences);
    EXPECT_EQ(sequences, ReadWholeFile(golden));
}

INSTANTIATE_TEST_SUITE_P(Launches, LaunchSequence, testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace EndToEnd
