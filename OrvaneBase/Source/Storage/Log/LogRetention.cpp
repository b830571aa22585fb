// The sweep of old log files.

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "Base/Container/AArray.h"
#include "Base/LocalClock.h"
#include "Base/XLog.h"
#include "Storage/File/CPath.h"
#include "Storage/Log/FileLogger.h"
#include "Storage/Log/LogFolder.h"

namespace Quern {
namespace {

constexpr size_t kStampDigits = 10;  // year, month, day and hour
constexpr int kSecondsPerHour = 3600;

// A file of the module's directory and the time that its name says.
struct LogFileEntry {
    std::string name;
    time_t stamp;
};

bool compareFileCreateTime(const LogFileEntry& a, const LogFileEntry& b) {
    return difftime(a.stamp, b.stamp) < 0;
}

std::vector<std::string> Split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    size_t begin = 0;
    for (size_t end; (end = text.find(separator, begin)) != std::string::npos; begin = end + 1)
        parts.push_back(text.substr(begin, end - begin));
    parts.push_back(text.substr(begin));
    return parts;
}

int Digits(const std::string& text, size_t at, size_t count) {
    return std::stoi(text.substr(at, count));
}

void RemoveFrom(const AString& directory, const std::string& name) {
    AString path;
    CPath::GetSubPath(path, directory.c_str(), name.c_str());
    CFile::Remove(path.c_str());
}

bool ModuleDirectory(const char* name, AString& path) {
    const char* cache = CPath::GetCachePath();
    if (!cache || !*cache || !name) return false;
    path = cache;
    CPath::AppendSubPath(path, kLogFolder);
    CPath::AppendSubPath(path, name);
    return CFile::Exist(path.c_str());
}

}  // namespace

void AFileLogger::RemoveOldLogFiles(const char* name, int hours, int fileNumLimit) {
    AString directory;
    AArray names;
    if (!ModuleDirectory(name, directory) || !CPath::GetFiles(directory.c_str(), &names)) return;

    std::vector<LogFileEntry> files;
    for (int i = 0; i < names.Count(); ++i) {
        const char* file = names.CStringAtIndex(i);
        files.push_back({file, GetLogFileTimeStamp(file)});
    }
    std::stable_sort(files.begin(), files.end(), compareFileCreateTime);

    if (fileNumLimit >= 0 && files.size() > static_cast<size_t>(fileNumLimit)) {
        const auto firstKept = files.begin() + static_cast<ptrdiff_t>(files.size() - static_cast<size_t>(fileNumLimit));
        std::for_each(files.begin(), firstKept, [&](const LogFileEntry& file) { RemoveFrom(directory, file.name); });
        files.erase(files.begin(), firstKept);
    }

    const time_t now = time(nullptr);
    for (const LogFileEntry& file : files) {
        if (difftime(now, file.stamp) <= static_cast<double>(hours) * kSecondsPerHour) continue;
        ORVANE_CONSOLE(kLogDebug, "RemoveOldLog log fileName %s", file.name.c_str());
        RemoveFrom(directory, file.name);
    }
}

time_t GetLogFileTimeStamp(const char* name) {
    if (!name) return 0;
    const std::vector<std::string> parts = Split(name, '_');
    if (parts.size() != 2) {
        ORVANE_CONSOLE(kLogWarning, "logFile is invalid %s", name);
        return 0;
    }
    const std::vector<std::string> stemAndExt = Split(parts[1], '.');
    if (stemAndExt.size() != 2) {
        ORVANE_CONSOLE(kLogWarning, "logFile is invalid %s", name);
        return 0;
    }
    const std::string& stem = stemAndExt[0];
    const std::string& ext = stemAndExt[1];
    if (ext != "log" && ext != "xlog") {
        ORVANE_CONSOLE(kLogWarning, "logFile Ext is invalid %s , ext %s", name, ext.c_str());
        return 0;
    }
    if (stem.size() != kStampDigits || !isDigits(stem.c_str())) {
        ORVANE_CONSOLE(kLogWarning, "logTime is invalid %s", stem.c_str());
        return 0;
    }
    // mktime looks at the first fields and the daylight flag alone: the time is local, whatever zone stands here.
    tm local{};
    local.tm_year = Digits(stem, 0, 4) - 1900;
    local.tm_mon = Digits(stem, 4, 2) - 1;
    local.tm_mday = Digits(stem, 6, 2);
    local.tm_hour = Digits(stem, 8, 2);
    local.tm_isdst = 0;
    local.tm_gmtoff = 28800;
    local.tm_zone = "CST";
    return TimeOfLocal(local);
}

bool isDigits(const char* text) {
    return text && text[strspn(text, "0123456789")] == '\0';
}

}  // namespace Quern
