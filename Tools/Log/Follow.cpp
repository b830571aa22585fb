#include "Log/Follow.h"

#include <chrono>
#include <filesystem>
#include <thread>

#include "Log/LogFileName.h"
#include "Log/Reading.h"
#include "Log/SourceList.h"
#include "Log/TailPrinter.h"

namespace OrvaneLog {
namespace {

namespace fs = std::filesystem;

// A block grows in memory, of which no one is told; so there is nothing to wait on.
constexpr std::chrono::milliseconds kPollInterval(100);
constexpr size_t kLinesShownFirst = 10;

fs::path Whole(const std::string& path) {
    std::error_code error;
    const fs::path whole = fs::absolute(path, error);
    return error ? fs::path(path) : whole.lexically_normal();
}

// Where the logger keeps the block of a module whose files are in that folder: two folders up. A collected log may have
// it nearer.
std::string FindBlock(const fs::path& folder, const std::string& module) {
    const std::string name = module + std::string(kBlockExtension);
    const fs::path usual = folder.parent_path().parent_path() / name;
    std::error_code error;
    for (const fs::path& place : {usual, folder / name, folder.parent_path() / name})
        if (fs::exists(place, error)) return place.string();
    return usual.string();
}

}  // namespace

bool FollowSet::Check() {
    bool good = true;
    for (const std::string& path : _arguments.paths) {
        std::error_code error;
        if (fs::exists(path, error)) continue;
        _report.Problem(path + ": " + (error ? error.message() : "No such file or directory"));
        good = false;
    }
    return good;
}

void FollowSet::Poll() {
    for (const std::string& path : _arguments.paths)
        Find(path);
    for (auto& [key, follower] : _modules)
        follower->Poll();
}

void FollowSet::Find(const std::string& path) {
    std::error_code error;
    if (!fs::is_directory(path, error)) {
        FollowFile(Whole(path).string(), true);
        return;
    }
    for (const std::string& file : ListSources({path}, _arguments.filter.modules).files)
        FollowFile(Whole(file).string(), false);
}

void FollowSet::FollowFile(const std::string& path, bool isNamed) {
    const fs::path folder = fs::path(path).parent_path();
    const LogFileName name = ParseLogFileName(path);
    if (name.isBlock) {
        const fs::path files = folder / kLogFolder / name.module;
        std::error_code error;
        // A block collected together with its module's files lies among them.
        if (!isNamed && !fs::exists(files, error) && _modules.contains({folder.string(), name.module})) return;
        // Only a block grows, so that of a journal is followed, should it come again.
        Add(files.string(), name.module, "", fs::path(path).replace_extension(kBlockExtension).string());
    } else {
        // A file without an hour in its name has no successors: it stands for a module of its own.
        const std::string module = name.hour.empty() ? std::string(BaseName(path)) : name.module;
        Add(folder.string(), module, isNamed || name.hour.empty() ? path : "", FindBlock(folder, name.module));
    }
}

void FollowSet::Add(const std::string& folder, const std::string& module, const std::string& first,
                    const std::string& block) {
    auto& follower = _modules[{folder, module}];
    if (!follower)
        follower =
            std::make_unique<ModuleFollower>(folder, module, first, block, _keys, _report, _printer, _arguments.filter);
}

void Follow(const Arguments& arguments, Look look, KeyRing& keys, DescriptorOutput& output, Report& report) {
    const std::unique_ptr<Printer> printer = MakePrinter(arguments, look, output, report);
    TailPrinter tail(*printer, arguments.lines.value_or(kLinesShownFirst));
    FollowSet modules(arguments, keys, report, tail);
    if (!modules.Check()) return;
    modules.Poll();
    tail.Release();
    for (output.Flush(); output.Error() == 0; output.Flush()) {
        std::this_thread::sleep_for(kPollInterval);
        modules.Poll();
    }
}

}  // namespace OrvaneLog
