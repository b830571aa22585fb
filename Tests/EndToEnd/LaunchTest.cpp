// The host with its sibling plugins as real libraries: launch, stages, events, stop.
#include <gmock/gmock.h>
#include <json/json.h>
#include <signal.h>

#include <filesystem>
#include <sstream>

#include "Support/Container.h"
#include "Support/Process.h"

namespace EndToEnd {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

// Which of the texts come in `all`, in the order in which they first come.
std::vector<std::string> InOrderOfAppearance(const std::string& all, const std::vector<std::string>& texts) {
    std::vector<std::pair<size_t, std::string>> found;
    for (const std::string& text : texts) {
        const size_t at = all.find(text);
        if (at != std::string::npos) found.emplace_back(at, text);
    }
    std::sort(found.begin(), found.end());
    std::vector<std::string> order;
    for (auto& [at, text] : found)
        order.push_back(text);
    return order;
}

size_t Count(const std::string& all, const std::string& text) {
    size_t count = 0;
    for (size_t at = all.find(text); at != std::string::npos; at = all.find(text, at + 1))
        ++count;
    return count;
}

// The events of the data plugin's file, checked to be JSON.
std::vector<Json::Value> ReadEvents(const Container& container) {
    std::vector<Json::Value> events;
    for (const std::string& line : SplitLines(ReadWholeFile(container.EventsFile()))) {
        Json::Value event;
        std::string problems;
        std::istringstream text(line);
        EXPECT_TRUE(Json::parseFromStream(Json::CharReaderBuilder(), text, &event, &problems)) << problems << line;
        events.push_back(event);
    }
    return events;
}

// An event's fields as "key=value", numbers without quotes.
std::vector<std::string> FieldsOf(const Json::Value& event) {
    std::vector<std::string> fields;
    for (const Json::Value& field : event["fields"]) {
        const std::string value =
            field.isMember("int") ? field["int"].asString() : '"' + field["text"].asString() + '"';
        fields.push_back(field["key"].asString() + (field["key"].isInt() ? "#" : "") + "=" + value);
    }
    return fields;
}

class LaunchTest : public testing::Test {
protected:
    // Runs the host with the three plugins over a script, to its end.
    Ending Run(const std::string& script, std::vector<std::string> arguments = {}) {
        WriteWholeFile(_container.Outside() / "script", script);
        arguments.insert(arguments.end(), {"--script", "script"});
        if (_withPlugins) arguments.insert(arguments.end(), {"--plugins", ORVANE_PLUGIN_FOLDER});
        Command command = _container.Host(arguments);
        command.environment.insert(command.environment.end(), _environment.begin(), _environment.end());
        Ending ending;
        RunToEnd(command, &ending, &_said);
        return ending;
    }

    Container _container;
    std::vector<std::pair<std::string, std::string>> _environment;
    bool _withPlugins = true;
    std::string _said;  // on standard error
};

TEST_F(LaunchTest, WalksThePluginsInByteOrderThroughEveryStage) {
    const Ending ending = Run("launch\npre-shutdown\nshutdown\n");
    EXPECT_EQ(ending.exitStatus, 0) << _said;

    std::vector<std::string> stages;
    for (const char* stage : {"OnStartup", "OnPostStartup", "OnPreShutdown", "OnShutdown"}) {
        stages.push_back(std::string("OrvaneCoreInnerPlugin::") + stage);
        for (const char* plugin : {"PELL ", "RAVEL ", "Sample "})
            stages.push_back(std::string(plugin) + stage);
    }
    EXPECT_EQ(InOrderOfAppearance(_said, stages), stages) << _said;
    // The library's own work at launch comes before the application's.
    EXPECT_THAT(InOrderOfAppearance(_said, {"HostAppDelegate application:didFinishLaunchingWithOptions:",
                                            "Sample OnPostStartup", "RAVEL sees the launch", "PELL OnStartup"}),
                ElementsAre("RAVEL sees the launch", "PELL OnStartup", "Sample OnPostStartup",
                            "HostAppDelegate application:didFinishLaunchingWithOptions:"));
}

TEST_F(LaunchTest, ReportsTheVersionsOfAllPlugins) {
    Run("launch\n");
    const std::vector<Json::Value> events = ReadEvents(_container);
    ASSERT_EQ(events.size(), 1u) << _said;
    EXPECT_EQ(events[0]["event"].asString(), "OrvaneSDK_Versions");
    EXPECT_EQ(events[0]["source"].asInt(), 2000);
    EXPECT_THAT(FieldsOf(events[0]), ElementsAre("100001#=3", "100002#=0", "OrvaneCore=\"1.5.11.2664\"",
                                                 "PELL=\"3.2.0.418\"", "RAVEL=\"2.7.1\"", "Sample=\"1.0.3\""));
}

TEST_F(LaunchTest, PutsTheAccountOnEventsOfALogin) {
    WriteWholeFile(_container.Outside() / "account", "openid=Zoë \"Q\" \\ 7\nchannel=-17\n");
    _environment = {{"RAVEL_ACCOUNT", "account"}};
    Run("launch\n");
    std::vector<Json::Value> events = ReadEvents(_container);
    ASSERT_EQ(events.size(), 1u) << _said;
    std::vector<std::string> fields = FieldsOf(events[0]);
    fields.resize(4);
    EXPECT_THAT(fields, ElementsAre("100001#=3", "100002#=0", "100000#=-17", "110002#=\"Zoë \"Q\" \\ 7\""));

    // An account that does not fit its buffer is no login; one that fills it to the last byte is one.
    for (const size_t length : {128, 129}) {
        WriteWholeFile(_container.Outside() / "account", "channel=5\nopenid=" + std::string(length, 'x') + "\n");
        std::filesystem::remove(_container.EventsFile());
        Run("launch\n");
        events = ReadEvents(_container);
        ASSERT_EQ(events.size(), 1u) << _said;
        fields = FieldsOf(events[0]);
        EXPECT_EQ(testing::Matches(testing::Contains("110002#=\"" + std::string(128, 'x') + "\""))(fields),
                  length == 128);
    }
}

TEST_F(LaunchTest, GoesOnPastLibrariesThatAreNoPlugins) {
    namespace fs = std::filesystem;
    const fs::path mixed = _container.Outside() / "mixed";
    fs::create_directories(mixed);
    for (const char* folder : {ORVANE_PLUGIN_FOLDER, ORVANE_TEST_PLUGIN_FOLDER}) {
        for (const auto& entry : fs::directory_iterator(folder)) {
            if (entry.path().extension() == ".so") fs::create_symlink(entry.path(), mixed / entry.path().filename());
        }
    }
    WriteWholeFile(mixed / "libGarbage.so", "this is no library\n");
    WriteWholeFile(mixed / "ReadMe.txt", "nor is this\n");

    _withPlugins = false;
    const Ending ending = Run("launch\n", {"--plugins", mixed.string()});
    EXPECT_EQ(ending.exitStatus, 0) << _said;
    EXPECT_THAT(_said, HasSubstr("cannot open " + (mixed / "libGarbage.so").string() + ": "));
    EXPECT_THAT(_said, HasSubstr("libStranger.so: it registered no plugin"));
    EXPECT_THAT(_said, HasSubstr("libNameless.so: it registered no plugin"));
    EXPECT_THAT(_said, HasSubstr("PluginManager::Install Fail, pluginName is null"));
    EXPECT_THAT(_said, HasSubstr("PluginManager::Install Fail, pluginVersion is null"));
    EXPECT_THAT(_said, Not(HasSubstr("Nameless OnStartup")));
    EXPECT_THAT(_said, Not(HasSubstr("ReadMe.txt")));
    EXPECT_THAT(InOrderOfAppearance(_said, {"libPell.so: plugin PELL", "libSample.so: plugin Sample", "libGarbage.so"}),
                ElementsAre("libGarbage.so", "libPell.so: plugin PELL", "libSample.so: plugin Sample"));
    EXPECT_THAT(_said, HasSubstr("Sample OnPostStartup"));
    EXPECT_EQ(ReadEvents(_container).size(), 1u);
}

TEST_F(LaunchTest, SaysWhatItCannotDo) {
    const Ending ending =
        Run("# a comment\n\nlog info too early\nlaunch\njump\nsleep soon\nlog loud text\nlaunch now\n"
            "log-file /nowhere\nopen-url game://lobby?x=1\nmemory-warning\n");
    EXPECT_EQ(ending.exitStatus, 1);
    for (const char* text :
         {"no log service yet", "line 5: event not understood: jump", "line 6: cannot sleep for soon",
          "no such level: loud", "event not understood: launch now", "cannot open /nowhere: No such file or directory",
          "HostAppDelegate application:openURL:options: game://lobby?x=1",
          "HostAppDelegate applicationDidReceiveMemoryWarning:"}) {
        EXPECT_THAT(_said, HasSubstr(text));
    }
    _withPlugins = false;
    EXPECT_EQ(Run("launch\n", {"--plugins", "/nowhere"}).exitStatus, 1);
    EXPECT_THAT(_said, HasSubstr("cannot read /nowhere"));
    EXPECT_EQ(Run("launch\n", {"--threads", "-1"}).exitStatus, 2);
    EXPECT_THAT(_said, testing::StartsWith("orvane-host: --threads takes a number")) << "no line of the library first";
    EXPECT_EQ(Run("", {"--treads", "1"}).exitStatus, 2);
    EXPECT_EQ(_said, "orvane-host: --treads: no such option; see --help\n");
    Run("", {"--help"});
    EXPECT_EQ(_said, "");
}

TEST_F(LaunchTest, EndsInOrderOnSigterm) {
    Process host(_container.Host({"--plugins", ORVANE_PLUGIN_FOLDER, "--threads", "2", "--lines", "0", "--ack-fd", "3",
                                  "--lines-per-second", "200"}));
    host.Send("launch\n");
    ASSERT_TRUE(host.WaitForAcknowledged([](const std::string& all) { return Count(all, "\n") >= 20; }))
        << host.Error();
    host.Signal(SIGTERM);
    EXPECT_EQ(host.Wait().exitStatus, 0);
    const std::vector<std::string> order = {"thread 1 logged",
                                            "HostAppDelegate applicationWillTerminate:",
                                            "OrvaneCoreInnerPlugin::OnPreShutdown",
                                            "PELL OnPreShutdown",
                                            "RAVEL OnPreShutdown",
                                            "Sample OnPreShutdown",
                                            "OrvaneCoreInnerPlugin::OnShutdown",
                                            "PELL OnShutdown",
                                            "RAVEL OnShutdown",
                                            "Sample OnShutdown",
                                            "orvane-host: ends"};
    EXPECT_EQ(InOrderOfAppearance(host.Error(), order), order) << host.Error();
}

TEST_F(LaunchTest, LetsTheLoginPluginTurnTheWindow) {
    Run("launch\norientations\n");
    EXPECT_THAT(_said, HasSubstr("orientations 2"));
    _environment = {{"RAVEL_ORIENTATIONS", "24"}};
    Run("launch\norientations\n");
    EXPECT_THAT(_said, HasSubstr("orientations 24"));
    // An answer of 0 is none: the application's own holds.
    _environment = {{"RAVEL_ORIENTATIONS", "0"}};
    Run("launch\norientations\n");
    EXPECT_THAT(_said, HasSubstr("orientations 2\n"));
    EXPECT_THAT(_said, HasSubstr("use origin implementation."));
}

// The example's manifest as it stands, and in binary form.
TEST_F(LaunchTest, TakesItsSettingsFromTheManifest) {
    const std::string binary = (_container.Outside() / "binary.plist").string();
    RunToEnd({{"python3", "-c",
               "import plistlib, sys; tree = plistlib.load(open(sys.argv[1], 'rb')); "
               "tree['OrvaneGame']['LogMode'] = 0; tree['Sample'] = {'LogMode': 1, 'LogLevel': 'Error'}; "
               "plistlib.dump(tree, open(sys.argv[2], 'wb'), fmt=plistlib.FMT_BINARY)",
               ORVANE_GAME_MANIFEST, binary},
              {},
              ""});
    const struct {
        std::string manifest;
        const char* module;
        const char* option;  // "LogMode" as the host sets it, which the manifest overrides for the game's module alone
        const char* taken;
    } kRuns[] = {{ORVANE_GAME_MANIFEST, "Demo", "0", "module Demo, logMode 2"},
                 {binary, "Demo", "2", "module Demo, logMode 0"},
                 {binary, "Other", "1", "module Other, logMode 1"}};
    for (const auto& run : kRuns) {
        Run("launch\nlog info by the manifest\n",
            {"--info-plist", run.manifest, "--module", run.module, "--log-mode", run.option});
        EXPECT_THAT(_said, HasSubstr(run.taken)) << run.manifest;
        EXPECT_THAT(_said, HasSubstr("module OrvaneCore, logMode 1"));
    }
    EXPECT_THAT(_said, HasSubstr("module Sample, logMode 1"));
    // Two of the runs let the plugin log errors alone.
    EXPECT_THAT(_container.ReadLog("Sample"), testing::Contains(HasSubstr("Sample is ready")).Times(1));

    for (const auto& [file, complaint] : {std::pair("/nowhere", "/nowhere: No such file or directory"),
                                          std::pair(ORVANE_HOST_PROGRAM, ": no property list with a dictionary")}) {
        EXPECT_EQ(Run("launch\n", {"--info-plist", file}).exitStatus, 1);
        EXPECT_THAT(_said, HasSubstr(complaint));
    }
}

TEST_F(LaunchTest, GivesEachPluginALoggerOfItsOwn) {
    for (const char* mode : {"0", "1", "2"}) {
        const std::string module = std::string("Game") + mode;
        _environment = {{"SAMPLE_LOG_MODE", mode}};
        Run("launch\nlog warning from the game\nlog 0 debug passes\npre-shutdown\n",
            {"--module", module, "--log-mode", mode});
    }
    // A later run brings back what is still in the blocks of modes 1 and 2.
    Run("launch\n", {"--module", "Other"});
    std::vector<std::string> texts;
    for (const std::string& line : _container.ReadLog("Sample"))
        texts.push_back(TextOfLogLine(line));
    EXPECT_EQ(std::count(texts.begin(), texts.end(), "Sample finishes its work"), 3) << testing::PrintToString(texts);
    EXPECT_EQ(std::count(texts.begin(), texts.end(), "Sample ends"), 0);
    EXPECT_EQ(std::count(texts.begin(), texts.end(), "a debug line stays below the default threshold"), 0);

    const std::vector<std::string> game = _container.ReadLog("Game0");
    ASSERT_EQ(game.size(), 2u);
    EXPECT_THAT(game[0], testing::ContainsRegex("^\\[....-..-.. ..:..:.. ...\\] \\| [A-Za-z]+ \\| \\[Game0\\] \\|"));
    EXPECT_EQ(TextOfLogLine(game[0]), "from the game");
    EXPECT_EQ(TextOfLogLine(game[1]), "debug passes");
}

}  // namespace
}  // namespace EndToEnd
