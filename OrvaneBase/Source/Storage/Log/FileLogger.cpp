#include "Storage/Log/FileLogger.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "Base/LocalClock.h"
#include "Base/XLog.h"
#include "Storage/File/CPath.h"
#include "Storage/Log/BlockJournal.h"
#include "Storage/Log/LogFolder.h"

namespace Quern {
namespace {

constexpr char kLongNameStandIn[] = "Quern";
constexpr size_t kLongestName = 109;  // with the rest of a file's name it fits the buffer below
constexpr size_t kFileNameCapacity = 128;

bool IsEmpty(const char* text) {
    return !text || !*text;
}

// Makes a directory below another one, if it does not exist.
bool EnsureBelow(AString& path, const char* name) {
    CPath::AppendSubPath(path, name);
    if (CFile::Exist(path.c_str()) || CPath::CreatePath(path.c_str())) return true;
    ORVANE_CONSOLE(kLogError, "CreatePath %s failed!", path.c_str());
    return false;
}

int64_t FileSize(const char* path) {
    struct stat status;
    return stat(path, &status) == 0 ? static_cast<int64_t>(status.st_size) : -1;
}

}  // namespace

AFileLogger::AFileLogger(const char* name, TAppenderMode mode, int sizeLimitMiB, LogExceedOp exceedOp)
    : _moduleName(name), _mode(mode), _sizeLimit(static_cast<int64_t>(sizeLimitMiB) * (1 << 20)), _exceedOp(exceedOp) {}

AFileLogger::~AFileLogger() = default;

void AFileLogger::LogToFile(const char* text) {
    if (text) Log2File(text, strlen(text));
}

AString AFileLogger::Directory() {
    const CCritical guard(_lock.get());
    return EnsureDirectory() ? _directory : AString();
}

void AFileLogger::Log2File(const void* data, size_t length, BlockJournal* journal) {
    if (!data || length == 0) return;
    const CCritical guard(_lock.get());
    _isFailing.store(!TryLog2File(data, length, journal), std::memory_order_relaxed);
}

bool AFileLogger::TryLog2File(const void* data, size_t length, BlockJournal* journal) {
    const tm now = LocalTime(time(nullptr));

    AString path;
    // A file that is in place needs no look at its directory, unless the next one has to be made there.
    if (_IsNeedToCreateLogFile(&now) || !IsFileInPlace()) {
        if (!EnsureDirectory()) {
            _logFile.reset();  // that of the hour before must not be taken for this one's
            return false;
        }
        if (!_GetFilePathByTime(path)) {
            ORVANE_CONSOLE(kLogError, "GetFilePathByTime failed!");
            return false;
        }
        if (!_OpenLogFile(path.c_str())) {
            ORVANE_CONSOLE(kLogError, "OpenLogFile failed!");
            return false;
        }
        if (!IsFileInPlace()) {
            ORVANE_CONSOLE(kLogError, "_logFile is null or file not exist");
            return false;
        }
    }
    if (_sizeLimit >= 1 && !MakeRoom(path)) {
        if (_mode == kAppendAsync) _logFile.reset();
        return false;
    }
    return Append(data, length, path, journal);
}

bool AFileLogger::Append(const void* data, size_t length, const AString& path, BlockJournal* journal) {
    const int64_t before = _mode == kAppendAsync ? FileSize(path.c_str()) : -1;
    if (journal && before >= 0) {
        AString name;
        CPath::GetFileName(path.c_str(), name);
        journal->BeginAppend(name.c_str(), before);
    }
    _logFile->Append(data, length);
    if (_mode == kAppendSync) return true;

    _logFile.reset();
    // A part of a record (the disk is full) would be taken for the begin of what is appended behind it.
    if (before < 0 || FileSize(path.c_str()) >= before + static_cast<int64_t>(length)) return true;
    ORVANE_CONSOLE(kLogError, "append %zu bytes to %s fail, the data is lost", length, path.c_str());
    (void)!truncate(path.c_str(), before);
    return false;
}

bool AFileLogger::EnsureDirectory() {
    if (!_directory.empty() && CFile::Exist(_directory.c_str())) return true;
    const char* cache = CPath::GetCachePath();
    if (IsEmpty(cache)) return false;
    AString path(cache);
    if (!EnsureBelow(path, kLogFolder) || !EnsureBelow(path, _moduleName.c_str())) return false;
    _directory = path;
    return true;
}

bool AFileLogger::IsFileInPlace() const {
    return _logFile && _logFile->IsInPlace();
}

bool AFileLogger::_IsNeedToCreateLogFile(const tm* now) {
    const bool isNeeded = !_lastTime || _lastTime->tm_hour != now->tm_hour || _lastTime->tm_mday != now->tm_mday ||
                          _lastTime->tm_mon != now->tm_mon || _lastTime->tm_year != now->tm_year;
    _lastTime = *now;
    return isNeeded;
}

bool AFileLogger::_GetFilePathByTime(AString& path) const {
    if (!_lastTime || _directory.empty()) return false;
    const char* module =
        static_cast<size_t>(_moduleName.length()) <= kLongestName ? _moduleName.c_str() : kLongNameStandIn;
    char name[kFileNameCapacity];
    const int length =
        snprintf(name, sizeof name, "%s_%4d%02d%02d%02d.%s", module, _lastTime->tm_year + 1900, _lastTime->tm_mon + 1,
                 _lastTime->tm_mday, _lastTime->tm_hour, _mode == kAppendSync ? "log" : "xlog");
    if (length < 0 || static_cast<size_t>(length) >= sizeof name) return false;
    CPath::GetSubPath(path, _directory.c_str(), name);
    return true;
}

bool AFileLogger::_OpenLogFile(const char* path) {
    _logFile = std::make_unique<CFile>();
    if (_logFile->Open(path, kFileAppend)) return true;
    ORVANE_CONSOLE(kLogError, "Failed to Open log files");
    _logFile.reset();
    return false;
}

bool AFileLogger::MakeRoom(const AString& path) {
    if (_exceedOp == kLogDrop) {
        if (_sizeLimit >= _logFile->GetLength()) return true;
        ORVANE_CONSOLE(kLogInfo, "_logFile size exceed return");
        return false;
    }
    if (_exceedOp != kLogStartOver) return true;
    if (!_RemoveIfFileExceedLimit()) {
        if (_logFile) return true;
        ORVANE_CONSOLE(kLogError, "_logFile is null or file not exist");  // it cannot be removed, or is gone already
        return false;
    }
    // The path is known only where this call has opened the file. Else this line is lost, and the next call opens the
    // right file.
    if (_OpenLogFile(path.c_str())) return true;
    ORVANE_CONSOLE(kLogError, "OpenLogFile failed!");
    return false;
}

bool AFileLogger::_RemoveIfFileExceedLimit() {
    if (_sizeLimit >= _logFile->GetLength()) return false;
    _logFile->Close();
    const bool isRemoved = _logFile->Remove();
    _logFile.reset();
    return isRemoved;
}

}  // namespace Quern
