#include "Log/SourceList.h"

#include <algorithm>
#include <filesystem>
#include <tuple>

#include "Log/LogFileName.h"

namespace OrvaneLog {
namespace {

namespace fs = std::filesystem;

// A journal tells what its block had lost to it. Without the block it is read by itself.
bool IsJournalAlone(const fs::path& path) {
    std::error_code ignored;
    return IsJournal(path.native()) && !fs::exists(fs::path(path).replace_extension(kBlockExtension), ignored);
}

void AddFolder(const fs::path& folder, std::vector<std::string>& found, std::vector<std::string>& problems) {
    std::error_code error;
    fs::recursive_directory_iterator entry(folder, error);
    while (!error && entry != fs::recursive_directory_iterator()) {
        std::error_code ignored;
        if (entry->is_regular_file(ignored) && (IsLogFile(entry->path().native()) || IsJournalAlone(entry->path())))
            found.push_back(entry->path().string());
        if (entry->is_directory(ignored) && !entry->is_symlink(ignored)) {
            fs::directory_iterator probe(entry->path(), ignored);
            if (ignored) {
                problems.push_back(entry->path().string() + ": " + ignored.message());
                entry.disable_recursion_pending();
            }
        }
        entry.increment(error);
    }
    if (error) problems.push_back(folder.string() + ": " + error.message());
}

void AddIfBlock(const fs::path& path, std::vector<std::string>& found) {
    std::error_code ignored;
    const bool isBlock = path.native().ends_with(kBlockExtension) || IsJournalAlone(path);
    if (isBlock && fs::is_regular_file(path, ignored)) found.push_back(path.string());
}

// The blocks of the modules whose files a folder of the logger's layout holds.
void AddBlocksOutside(const fs::path& folder, std::vector<std::string>& found) {
    std::error_code error;
    fs::path whole = fs::absolute(folder, error).lexically_normal();
    if (error) return;
    if (!whole.has_filename()) whole = whole.parent_path();  // a slash at the end
    if (whole.filename() == kLogFolder) {
        for (const auto& entry : fs::directory_iterator(whole.parent_path(), error))
            AddIfBlock(entry.path(), found);
    } else if (whole.parent_path().filename() == kLogFolder) {
        for (const std::string_view extension : {kBlockExtension, kJournalExtension})
            AddIfBlock(whole.parent_path().parent_path() / (whole.filename().string() + std::string(extension)), found);
    }
}

bool ComesBefore(const std::string& a, const std::string& b) {
    const LogFileName left = ParseLogFileName(a), right = ParseLogFileName(b);
    return std::tie(left.isBlock, left.module, left.hour, a) < std::tie(right.isBlock, right.module, right.hour, b);
}

}  // namespace

bool MayHoldModule(const std::string& path, const std::vector<std::string>& modules) {
    if (modules.empty()) return true;
    const LogFileName name = ParseLogFileName(path);
    const bool telling = (name.isBlock || !name.hour.empty()) && name.module != kLongModule;
    return !telling || std::find(modules.begin(), modules.end(), name.module) != modules.end();
}

SourceList ListSources(const std::vector<std::string>& paths, const std::vector<std::string>& modules) {
    SourceList list;
    for (const std::string& path : paths) {
        std::error_code error;
        if (path == "-" || !fs::is_directory(path, error)) {
            list.files.push_back(path);
            continue;
        }
        std::vector<std::string> found;
        const size_t problems = list.problems.size();
        AddFolder(path, found, list.problems);
        AddBlocksOutside(path, found);
        if (found.empty() && list.problems.size() == problems)
            list.problems.push_back(path + ": no log files in this folder");
        std::erase_if(found, [&modules](const std::string& file) { return !MayHoldModule(file, modules); });
        std::sort(found.begin(), found.end(), ComesBefore);
        list.files.insert(list.files.end(), found.begin(), found.end());
    }
    return list;
}

}  // namespace OrvaneLog
