// The host with its sibling plugins as real libraries: launch, stages, events, stop.
#include "Support/Container.h"
#include "Support/LoadCheck.h"
#include "Support/Process.h"
#include "Support/Test.h"

namespace EndToEnd {
namespace {

// Whether each of the texts is there and comes for the first time behind those before it.
bool ComeInOrder(const std::string& all, const std::vector<std::string>& texts) {
    std::vector<size_t> places;
    for (const std::string& text : texts)
        places.push_back(all.find(text));
    return std::is_sorted(places.begin(), places.end()) && places.back() != std::string::npos;
}

class LaunchTest : public testing::Test {
protected:
    // Runs the host with the three plugins over a script, to its end; its status.
    int Run(const std::string& script, std::vector<std::string> arguments = {}) {
        WriteFile(_container.Outside() / "script", script);
        arguments.insert(arguments.end(), {"--script", "script"});
        if (_withPlugins) arguments.insert(arguments.end(), {"--plugins", ORVANE_PLUGIN_FOLDER});
        Command command = _container.Host(arguments);
        command.environment.insert(command.environment.end(), _environment.begin(), _environment.end());
        const Outcome run = RunToEnd(command);
        _said = run.error;
        return run.status;
    }

    Container _container;
    std::vector<std::pair<std::string, std::string>> _environment;
    bool _withPlugins = true;
    std::string _said;  // on standard error
};

TEST_F(LaunchTest, PutsTheAccountOnEventsOfALogin) {
    _environment = {{"RAVEL_ACCOUNT", "account"}};
    // An account that does not fit its buffer is no login; one that fills it to the last byte is one.
    const std::string fits(128, 'x');
    for (const auto& [openId, fields] :
         {std::pair<std::string, std::string>{R"(Zoë "Q" \ 7)", R"({"key":110002,"text":"Zoë \"Q\" \\ 7"},)"},
          {fits, R"({"key":110002,"text":")" + fits + "\"},"},
          {fits + "x", ""}}) {
        WriteFile(_container.Outside() / "account", "channel=-17\nopenid=" + openId + "\n");
        std::filesystem::remove(_container.EventsFile());
        EXPECT_EQ(Run("launch\n"), 0) << _said;
        EXPECT_THAT(ReadFile(_container.EventsFile()),
                    StartsWith(R"({"event":"OrvaneSDK_Versions","source":2000,"fields":[{"key":100001,"int":3},)"
                               R"({"key":100002,"int":0},)" +
                               (fields.empty() ? "" : R"({"key":100000,"int":-17},)" + fields) + R"({"key":"Orv)"));
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
    WriteFile(mixed / "libGarbage.so", "this is no library\n");
    WriteFile(mixed / "ReadMe.txt", "nor is this\n");

    _withPlugins = false;
    EXPECT_EQ(Run("launch\n", {"--plugins", mixed.string()}), 1) << "for the file that cannot be opened: " << _said;
    EXPECT_TRUE(ComeInOrder(
        _said, {"cannot open " + (mixed / "libGarbage.so").string() + ": ", "libNameless.so: it registered no plugin",
                "libPell.so: plugin PELL", "libSample.so: plugin Sample", "libStranger.so: it registered no plugin",
                "Sample OnPostStartup"}))
        << _said;
    EXPECT_THAT(_said, Not(HasSubstr("ReadMe.txt")));
    EXPECT_EQ(SplitLines(ReadFile(_container.EventsFile())).size(), 1u);
}

TEST_F(LaunchTest, SaysWhatItCannotDo) {
    EXPECT_EQ(Run("# a comment\n\nlog info too early\nlaunch\njump\nsleep soon\nlog loud text\nlaunch now\n"
                  "log-file /nowhere\nopen-url game://lobby?x=1\nmemory-warning\n"),
              1);
    for (const char* text :
         {"no log service yet", "line 5: event not understood: jump", "line 6: cannot sleep for soon",
          "no such level: loud", "event not understood: launch now", "cannot open /nowhere: No such file or directory",
          "HostAppDelegate application:openURL:options: game://lobby?x=1",
          "HostAppDelegate applicationDidReceiveMemoryWarning:"}) {
        EXPECT_THAT(_said, HasSubstr(text));
    }
    EXPECT_EQ(Run("fetch\nlaunch\n"), 1);
    EXPECT_THAT(_said, HasSubstr("line 1: no configuration service yet"));
    _withPlugins = false;
    EXPECT_EQ(Run("launch\n", {"--plugins", "/nowhere"}), 1);
    EXPECT_THAT(_said, HasSubstr("cannot read /nowhere"));
    EXPECT_EQ(Run("launch\n", {"--threads", "-1"}), 2);
    EXPECT_THAT(_said, StartsWith("orvane-host: --threads takes a number")) << "no line of the library first";
    EXPECT_EQ(Run("", {"--treads", "1"}), 2);
    EXPECT_EQ(_said, "orvane-host: --treads: no such option; see --help\n");
    Run("", {"--help"});
    EXPECT_EQ(_said, "");
}

TEST_F(LaunchTest, EndsInOrderOnSigterm) {
    Process host(_container.Host({"--plugins", ORVANE_PLUGIN_FOLDER, "--threads", "2", "--lines", "0", "--ack-fd", "3",
                                  "--lines-per-second", "200"}));
    host.Send("launch\n");
    ASSERT_TRUE(host.WaitForAcknowledged([](const auto& all) { return CountLines(all) >= 20; })) << host.Error();
    host.Signal(SIGTERM);
    EXPECT_EQ(host.Wait().status, 0);
    EXPECT_TRUE(ComeInOrder(
        host.Error(),
        {"thread 1 logged", "HostAppDelegate applicationWillTerminate:", "OrvaneCoreInnerPlugin::OnPreShutdown",
         "PELL OnPreShutdown", "RAVEL OnPreShutdown", "Sample OnPreShutdown", "OrvaneCoreInnerPlugin::OnShutdown",
         "PELL OnShutdown", "RAVEL OnShutdown", "Sample OnShutdown", "orvane-host: ends"}))
        << host.Error();
}

TEST_F(LaunchTest, LetsTheLoginPluginTurnTheWindow) {
    for (const char* turned : {"2", "24"}) {
        Run("launch\norientations\n");
        EXPECT_THAT(_said, HasSubstr(std::string("orientations ") + turned + "\n"));
        _environment = {{"RAVEL_ORIENTATIONS", "24"}};
    }
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
    EXPECT_THAT(_container.ReadLog("Sample"), Contains(HasSubstr("Sample is ready")).Times(1));

    for (const auto& [file, complaint] : {std::pair("/nowhere", "/nowhere: No such file or directory"),
                                          std::pair(ORVANE_HOST_PROGRAM, ": no property list with a dictionary")}) {
        EXPECT_EQ(Run("launch\n", {"--info-plist", file}), 1);
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
    const std::vector<std::string> sample = _container.ReadLog("Sample");
    EXPECT_THAT(sample, Contains(EndsWith("| Sample finishes its work")).Times(3));
    EXPECT_THAT(sample, Not(Contains(HasSubstr("Sample ends"))));
    EXPECT_THAT(sample, Not(Contains(HasSubstr("a debug line"))));

    EXPECT_EQ(_container.ReadTexts("Game0"), "from the game\ndebug passes\n");
    EXPECT_THAT(_container.ReadLog("Game0").at(0),
                ContainsRegex("^\\[....-..-.. ..:..:.. ...\\] \\| .* \\| \\[Game0\\] \\|"));
}

}  // namespace
}  // namespace EndToEnd
