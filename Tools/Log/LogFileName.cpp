#include "Log/LogFileName.h"

#include <algorithm>

namespace OrvaneLog {
namespace {

constexpr size_t kHourDigits = 10;  // year, month, day, hour

}  // namespace

std::string_view BaseName(std::string_view path) {
    const size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

bool IsLogFile(std::string_view path) {
    return path.ends_with(".xlog") || path.ends_with(".log") || path.ends_with(kBlockExtension);
}

bool IsJournal(std::string_view path) {
    return path.ends_with(kJournalExtension);
}

LogFileName ParseLogFileName(std::string_view path) {
    LogFileName name;
    std::string_view stem = BaseName(path);
    name.isBlock = stem.ends_with(kBlockExtension) || IsJournal(stem);
    if (const size_t dot = stem.rfind('.'); dot != std::string_view::npos) stem = stem.substr(0, dot);
    if (!name.isBlock && stem.size() > kHourDigits && stem[stem.size() - kHourDigits - 1] == '_') {
        const std::string_view hour = stem.substr(stem.size() - kHourDigits);
        if (std::all_of(hour.begin(), hour.end(), [](char c) { return c >= '0' && c <= '9'; })) {
            name.hour = hour;
            stem.remove_suffix(kHourDigits + 1);
        }
    }
    name.module = stem;
    return name;
}

}  // namespace OrvaneLog
