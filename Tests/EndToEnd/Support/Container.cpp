#include "Support/Container.h"
#include "Support/Test.h"

namespace EndToEnd {
namespace fs = std::filesystem;

std::string TextOfLogLine(const std::string& line) {
    const std::string shown = OrvaneTest::ShortLogLine(line);
    return shown == line ? line : shown.substr(shown.find(' ') + 1);
}

Command Container::Host(std::vector<std::string> arguments) const {
    Command command;
    command.words = {ORVANE_HOST_PROGRAM};
    command.words.insert(command.words.end(), arguments.begin(), arguments.end());
    command.environment = {{"ORVANE_HOME", Home().string()}, {"PELL_EVENTS", EventsFile().string()}};
    command.folder = Outside().string();
    return command;
}

std::vector<std::string> Container::ReadLog(const std::string& module) const {
    Command command;
    command.words = {ORVANE_LOG_PROGRAM, "--quiet", "--key", ORVANE_LOG_KEY_FILE};
    // To a module's folder belongs the block that lies outside of it; before the first flush there is that alone.
    const fs::path source = fs::exists(LogFolder(module)) ? LogFolder(module) : MappedFile(module);
    if (!fs::exists(source)) return {};
    command.words.push_back(source.string());
    return SplitLines(RunToEnd(command).output);
}

std::string Container::ReadTexts(const std::string& module) const {
    std::string texts;
    for (const std::string& line : ReadLog(module))
        texts += TextOfLogLine(line) + "\n";
    return texts;
}

}  // namespace EndToEnd
