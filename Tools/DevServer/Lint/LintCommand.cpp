#include "DevServer/Lint/LintCommand.h"

#include <algorithm>
#include <filesystem>

#include "DevServer/JsonText.h"
#include "DevServer/Lint/Lint.h"
#include "DevServer/ModuleFolder.h"

namespace OrvaneDevServer {
namespace fs = std::filesystem;
namespace {

class Linting {
public:
    explicit Linting(LintReport& report) : _report(report) {}

    void Path(const fs::path& path) {
        std::error_code error;
        if (!fs::is_directory(path, error)) return File(path);
        const bool isServed = fs::is_directory(path / "modules", error) || fs::is_directory(path / "devices", error);
        const size_t before = _report.files;
        if (isServed)
            Served(path);
        else
            for (const fs::path& file : JsonFilesIn(path))
                File(file);
        if (_report.files == before) _report.problems.push_back(path.string() + ": there is nothing to lint");
    }

private:
    static std::vector<fs::path> EntriesOf(const fs::path& folder) {
        std::vector<fs::path> entries;
        std::error_code error;
        for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error))
            if (!at->path().filename().string().starts_with('.')) entries.push_back(at->path());
        std::sort(entries.begin(), entries.end());
        return entries;
    }

    static std::vector<fs::path> JsonFilesIn(const fs::path& folder) {
        std::vector<fs::path> files = EntriesOf(folder);
        std::erase_if(files, [](const fs::path& file) { return file.extension() != ".json"; });
        return files;
    }

    // Keys for one device stand over those for all.
    void Served(const fs::path& folder) {
        Json::Value shared(Json::objectValue);
        for (const fs::path& file : JsonFilesIn(folder / "modules")) {
            std::string text, error;
            if (!Read(file, text)) continue;
            const std::string module = file.stem().string();
            Json::Value keys;
            if (ReadStrictly(text, keys, error)) shared[module] = keys;
            Add(file, LintModuleText(module, text));
        }
        for (const fs::path& device : EntriesOf(folder / "devices"))
            for (const fs::path& file : JsonFilesIn(device)) {
                std::string text;
                const std::string module = file.stem().string();
                if (Read(file, text)) Add(file, LintModuleText(module, text, shared.get(module, Json::Value())));
            }
    }

    void File(const fs::path& path) {
        std::string text;
        if (Read(path, text)) Add(path, LintText(path.filename().string(), text));
    }

    bool Read(const fs::path& path, std::string& text) {
        if (ReadModuleFile(path.string(), text)) {
            ++_report.files;
            return true;
        }
        _report.problems.push_back(path.string() + ": " + text);
        return false;
    }

    void Add(const fs::path& path, const Findings& findings) {
        _report.hasFault = _report.hasFault || HasFault(findings);
        for (const Finding& finding : findings) {
            const bool isOfOther = !finding.module.empty() && finding.module != path.stem().string();
            const std::string where = (isOfOther ? finding.module + "." : "") + finding.key;
            _report.lines.push_back(path.string() + ": " + (where.empty() ? "" : where + ": ") +
                                    SeverityWord(finding.severity) + ": " + finding.text + " [" + finding.rule + "]");
        }
    }

    LintReport& _report;
};

}  // namespace

LintReport LintPaths(const std::vector<std::string>& paths) {
    LintReport report;
    Linting linting(report);
    for (const std::string& path : paths)
        linting.Path(path);
    return report;
}

}  // namespace OrvaneDevServer
