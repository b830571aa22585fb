#include "Support/Container.h"

#include <algorithm>
#include <fstream>
#include <sstream>

namespace EndToEnd {
namespace fs = std::filesystem;

std::string TextOfLogLine(const std::string& line) {
    // [time] | level | [module] |thread| file:line|function| text
    constexpr int kBarsInHead = 6;
    size_t at = 0;
    for (int bar = 0; bar < kBarsInHead; ++bar) {
        at = line.find('|', at);
        if (at == std::string::npos) return line;
        ++at;
    }
    return at < line.size() && line[at] == ' ' ? line.substr(at + 1) : line;
}

std::vector<fs::path> Container::LogFiles(const std::string& module) const {
    std::vector<fs::path> files;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(LogFolder(module), error)) {
        files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
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
    return SplitLines(RunToEnd(command));
}

std::vector<std::string> SplitLines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

std::string ReadWholeFile(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

void WriteWholeFile(const fs::path& path, const std::string& content) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
}

}  // namespace EndToEnd
