#include "Storage/File/CPath.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>

#include "Base/ProjectName.h"
#include "Base/XLog.h"
#include "Storage/File/PathSource.h"

namespace Quern {
namespace {

// Filled at the first need, normally while only the start-up thread runs. Never freed: the texts are handed out.
std::atomic<char*> g_appPath{nullptr};
std::atomic<char*> g_docPath{nullptr};
std::atomic<char*> g_cachePath{nullptr};
std::atomic<char*> g_defaultConfigFile{nullptr};

// No lock is held while the text is made: that may read the manifest, and say on the console that it is damaged.
template <typename Make>
const char* KeepOnce(std::atomic<char*>& kept, Make make) {
    if (const char* path = kept.load(std::memory_order_acquire)) return path;
    char* copy = strdup(make().c_str());
    char* first = nullptr;
    if (kept.compare_exchange_strong(first, copy, std::memory_order_acq_rel, std::memory_order_acquire)) return copy;
    free(copy);
    return first;
}

const char* BehindLast(const char* path, char separator) {
    const char* found = strrchr(path, separator);
    return found ? found + 1 : nullptr;
}

bool IsFileOrDirectory(DIR* directory, const dirent& entry) {
    if (entry.d_type != DT_UNKNOWN) return entry.d_type == DT_REG || entry.d_type == DT_DIR;
    // Some file systems do not tell the type.
    struct stat status;
    if (fstatat(dirfd(directory), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) != 0) return false;
    return S_ISREG(status.st_mode) || S_ISDIR(status.st_mode);
}

}  // namespace

const char* CPath::GetAppPath() {
    return KeepOnce(g_appPath, [] { return PathSource::Current().Home(); });
}

const char* CPath::GetDocPath() {
    return KeepOnce(g_docPath, [] { return PathSource::Current().Documents(); });
}

const char* CPath::GetCachePath() {
    return KeepOnce(g_cachePath, [] { return PathSource::Current().Caches(); });
}

const char* CPath::GetDefaultConfigFile() {
    return KeepOnce(g_defaultConfigFile, [] {
        AString path;
        GetSubPath(path, GetCachePath(), (AString(ProjectName()) + ".ini").c_str());
        return path;
    });
}

bool CPath::CreatePath(const char* path) {
    std::error_code error;
    if (!path || std::filesystem::exists(path, error)) return false;
    std::filesystem::create_directories(path, error);
    return !error && std::filesystem::is_directory(path, error);
}

bool CPath::RemovePath(const char* path) {
    if (!path) return false;
    std::error_code error;
    const auto removed = std::filesystem::remove_all(path, error);
    return !error && removed > 0;
}

void CPath::GetSubPath(AString& out, const char* base, const char* sub) {
    if (!base || !sub) return;
    AString path(base);  // built aside, since `base` or `sub` may be the text of `out`
    if (!path.Empty() && !path.EndWith("/") && !path.EndWith("\\")) path += '/';
    out = path += sub;
}

AString& CPath::AppendSubPath(AString& path, const char* sub) {
    GetSubPath(path, path.c_str(), sub);
    return path;
}

void CPath::GetFileName(const char* path, AString& out) {
    if (!path) return;
    const char* name = BehindLast(path, '\\');
    if (!name) name = BehindLast(path, '/');
    out = AString(name ? name : path);
}

bool CPath::GetFiles(const char* path, AArray* files) {
    if (!path || !files) {
        ORVANE_LOG_ERROR("pszPath or files is NULL!");
        return false;
    }
    const std::unique_ptr<DIR, int (*)(DIR*)> directory(opendir(path), closedir);
    if (!directory) {
        ORVANE_LOG_ERROR("Open dir error...");
        return false;
    }
    while (const dirent* entry = readdir(directory.get())) {
        const bool isDots = strcmp(entry->d_name, ".") == 0 || strcmp(entry->d_name, "..") == 0;
        if (!isDots && IsFileOrDirectory(directory.get(), *entry)) files->Add(entry->d_name);
    }
    return true;
}

}  // namespace Quern
