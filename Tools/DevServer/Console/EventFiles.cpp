#include "DevServer/Console/EventFiles.h"

#include <algorithm>
#include <filesystem>
#include <vector>

#include "DevServer/Console/FileEnd.h"
#include "DevServer/JsonText.h"

namespace OrvaneDevServer {
namespace fs = std::filesystem;
namespace {

constexpr size_t kMostBytes = 2 << 20;  // of a file
constexpr Json::ArrayIndex kMostEvents = 2000;
constexpr size_t kMostFiles = 50;

std::vector<fs::path> FilesIn(const std::string& folder) {
    std::vector<fs::path> files;
    std::error_code error;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error))
        if (at->path().extension() == ".jsonl") files.push_back(at->path());
    std::sort(files.begin(), files.end());
    if (files.size() > kMostFiles) files.resize(kMostFiles);
    return files;
}

bool IsEvent(const Json::Value& line) {
    return line.isObject() && line["event"].isString() && line["fields"].isArray();
}

}  // namespace

Json::Value ReadEvents(const std::string& folder, const std::string& name) {
    Json::Value read(Json::objectValue), events(Json::arrayValue);
    read["files"] = Json::Value(Json::arrayValue);
    bool isCut = false;
    Json::UInt broken = 0;
    for (const fs::path& path : FilesIn(folder)) {
        const std::string file = path.filename().string();
        read["files"].append(file);
        const FileEnd end = LinesAtEnd(path.string(), kMostBytes);
        isCut = isCut || end.isCut;
        Json::UInt number = 0;
        for (const std::string& text : end.lines) {
            Json::Value line;
            std::string ignored;
            ++number;
            if (!ReadStrictly(text, line, ignored) || !IsEvent(line)) {
                ++broken;
                continue;
            }
            if (!name.empty() && line["event"] != name) continue;
            line["file"] = file;
            line["number"] = number;
            events.append(line);
        }
    }
    Json::Value newest(Json::arrayValue);
    const Json::ArrayIndex first = events.size() > kMostEvents ? events.size() - kMostEvents : 0;
    for (Json::ArrayIndex i = first; i < events.size(); ++i)
        newest.append(events[i]);
    read["events"] = newest;
    read["cut"] = isCut || first > 0;
    read["broken"] = broken;
    return read;
}

}  // namespace OrvaneDevServer
