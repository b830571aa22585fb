// Files and folders as tests use them.
#ifndef ORVANE_TESTS_SUPPORT_FILES_H
#define ORVANE_TESTS_SUPPORT_FILES_H

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace OrvaneTest {

// The content; empty where there is no such file.
inline std::string ReadFile(const std::string& path) {
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

// Makes the folders that lead to it as well.
inline void WriteFile(const std::string& path, const std::string& content, bool append = false) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary | (append ? std::ios::app : std::ios::trunc)) << content;
}

// Splits at newlines; what stands behind the last one is a line too, unless it is empty.
inline std::vector<std::string> SplitLines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

// Those that have a text in them.
inline std::vector<std::string> LinesWith(const std::string& part, const std::string& text) {
    std::vector<std::string> lines = SplitLines(text);
    std::erase_if(lines, [&part](const std::string& line) { return line.find(part) == std::string::npos; });
    return lines;
}

// The names in a folder, sorted; none if it does not exist.
inline std::vector<std::string> FilesIn(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

// A line of the log as its level's word and its text ("Error eventName is null"); another line as it is.
inline std::string ShortLogLine(const std::string& line) {
    // [time] | level | [module] |thread| file:line|function| text
    const size_t level = line.find("] | ") + 4;
    if (!line.starts_with('[') || level < 4) return line;
    size_t bar = 0;
    for (int bars = 0; bars < 6; ++bars)
        if ((bar = line.find('|', bar) + 1) == 0) return line;
    return line.substr(level, line.find(' ', level) - level) + line.substr(bar);
}

}  // namespace OrvaneTest

#endif
