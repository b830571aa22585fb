#include "Storage/Log/Logger.h"

#include <pthread.h>
#include <strings.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "Base/ConsoleSink.h"
#include "Base/LogCallback.h"
#include "PluginManager/PluginManager.h"  // upward: the version of a plugin decides whether its logger is compatible
#include "System/Thread/Time.h"

namespace Quern {
namespace {

constexpr char kCoreModule[] = "OrvaneCore";
constexpr char kProjectModule[] = "Orvane";
constexpr char kDorsel[] = "Dorsel";
constexpr char kOldestDorsel[] = "4.2.027.27094";
constexpr size_t kVersionFieldCapacity = 32;

int Sign(double difference) {
    return difference < 0 ? -1 : difference > 0 ? 1 : 0;
}

// Takes the digits up to the next dot off the front of a version. False, and nothing taken, if there is no dot.
bool TakeField(const char*& version, int& value) {
    const char* dot = strchr(version, '.');
    if (!dot) return false;
    char field[kVersionFieldCapacity] = {};
    memcpy(field, version, std::min(static_cast<size_t>(dot - version), sizeof field - 1));
    value = atoi(field);
    version = dot + 1;
    return true;
}

}  // namespace

Logger::Logger(const char* moduleName) : _moduleName(moduleName ? moduleName : "") {}

Logger::~Logger() {
    if (_storeOwner) _storeOwner->CloseBlock();
}

void Logger::SetOption(const char* key, int value) {
    if (!key) {
        ORVANE_CONSOLE(kLogError, "Logger SetOption key is NULL");
    } else if (strcmp(key, "LogMode") == 0) {
        _logMode.store(value, std::memory_order_relaxed);
    } else if (strcmp(key, "LogSingleSizeLimit") == 0) {
        _singleSizeLimit.store(value, std::memory_order_relaxed);
    } else if (strcmp(key, "LogExceedOp") == 0) {
        _exceedOp.store(value, std::memory_order_relaxed);
    } else if (strcmp(key, "LogConsoleOutput") == 0) {
        _consoleOutput.store(value, std::memory_order_relaxed);
    } else {
        ORVANE_CONSOLE(kLogError, "Logger invalid key %s", key);
    }
}

void Logger::SetOption(const char*, const char*) {}

void Logger::SetCallback(void (*callback)(ALogPriority, const char*)) {
    _callback.store(callback, std::memory_order_release);
}

void Logger::SetLogLevel(ALogPriority level) {
    PlatformLog("%s SetLogLevel:%d", _moduleName.c_str(), static_cast<int>(level));
    if (static_cast<uint32_t>(level) <= kLogNone) _level.store(level, std::memory_order_relaxed);
    _loadDefaultLevel();
    PlatformLog("%s SetLogLevel finished, final LogLevel:%d", _moduleName.c_str(), static_cast<int>(GetLogLevel()));
}

void Logger::_loadDefaultLevel() {
    static constexpr const char* kWords[] = {"Debug", "Info", "Warning", "Event", "Error", "None"};
    const AString word = Orvane::Configure::GetInstance()->GetString(_moduleName.c_str(), "LogLevel", "");
    if (word.empty()) return;
    for (int32_t level = kLogDebug; level <= kLogNone; ++level) {
        if (strcasecmp(word.c_str(), kWords[level]) != 0) continue;
        _level.store(level, std::memory_order_relaxed);
        return;
    }
}

void Logger::ReadOptions(const char* section) {
    Orvane::Configure* configure = Orvane::Configure::GetInstance();
    const auto read = [&](const char* key, std::atomic<int32_t>& field) {
        field.store(configure->GetInt(section, key, field.load(std::memory_order_relaxed)), std::memory_order_relaxed);
    };
    read("LogMode", _logMode);
    read("LogSingleSizeLimit", _singleSizeLimit);
    read("LogExceedOp", _exceedOp);
    read("LogConsoleOutput", _consoleOutput);
}

void Logger::SetFlagsFromMode() {
    const int32_t mode = _logMode.load(std::memory_order_relaxed);
    if (mode < 0 || mode > 2) return;  // an unknown mode leaves the flags as they are
    _sync = mode == 0 ? kAppendSync : kAppendAsync;
    _compress = mode != 0;
    _crypt = mode == 2;
}

void Logger::Init() {
    if (_isInitCalled.exchange(true)) return;
    ReadOptions(_moduleName.c_str());
    if (_moduleName == kProjectModule) ReadOptions(kCoreModule);
    _threadWait = static_cast<uint32_t>(
        Orvane::Configure::GetInstance()->GetInt(kCoreModule, "LogThreadTimeWait", static_cast<int>(_threadWait)));
    _loadDefaultLevel();
    SetFlagsFromMode();

    _storeOwner = std::make_shared<LogStore>(
        LogStoreOptions{_moduleName, _sync, _compress, _crypt, _singleSizeLimit.load(std::memory_order_relaxed),
                        static_cast<LogExceedOp>(_exceedOp.load(std::memory_order_relaxed)), _threadWait});
    const long long begin = CTime::GetTimeTick();
    bool isMapped = true;  // and in mode 0, which maps nothing, it is reported so all the same
    if (_sync == kAppendSync)
        _store.store(_storeOwner.get(), std::memory_order_release);
    else
        isMapped = LogStore::OpenBlock(_storeOwner, _store);
    ORVANE_LOG_INFO("log init module %s, logMode %d, sync:%d, use mmap:%d, mmap cost %lld us", _moduleName.c_str(),
                    static_cast<int>(_logMode.load(std::memory_order_relaxed)), static_cast<int>(_sync),
                    static_cast<int>(isMapped), CTime::GetTimeTick() - begin);
}

void Logger::Log(ALogPriority priority, const char* file, unsigned int line, const char* function, const char*,
                 const char* text) {
    if (!text || static_cast<uint32_t>(priority) >= kLogNone || priority < _level.load(std::memory_order_relaxed))
        return;
    const int savedErrno = errno;
    LogLine formatted;
    formatted.length = XLogFormat(formatted.text, priority, file, line, function, _moduleName.c_str(), text);
    if (_consoleOutput.load(std::memory_order_relaxed) >= 1)
        PrintLogToConsole(priority, _moduleName.c_str(), formatted.text);

    // The store adds a newline to the line; the callback is given it without.
    const size_t length = formatted.length;
    LogStore* store = _store.load(std::memory_order_acquire);
    if (store) store->Append(formatted);
    errno = savedErrno;

    if (!_callback.load(std::memory_order_acquire) || !IsHandedToLogCallback()) return;
    const CCritical guard(store ? &store->Mutex() : nullptr);
    const auto callback = _callback.load(std::memory_order_acquire);
    if (!callback) return;
    formatted.text[length] = '\0';
    const LogCallbackScope inside;
    callback(priority, formatted.text);
}

LogKeeping Logger::Keeping() const {
    const LogStore* const store = _store.load(std::memory_order_acquire);
    return store ? store->Keeping() : LogKeeping::kNotKept;
}

void Logger::RemoveOldLog(int hours, int fileNumLimit) {
    AFileLogger::RemoveOldLogFiles(_moduleName.c_str(), hours, fileNumLimit);
}

void Logger::Perform(int) {}

void Logger::OnConfigureRefreshed(Orvane::IStringIterator*) {
    SetLogLevel(GetLogLevel());
}

int Logger::_IsCompatible() const {
    if (_moduleName != kDorsel) return 1;
    const Orvane::Plugin::PluginCollection plugins = Orvane::Plugin::PluginManager::GetInstance()->CopyPlugins();
    const auto found = plugins.find(kDorsel);
    return found != plugins.end() && compareVersion(found->second.pluginVersion.c_str()) < 0 ? 0 : 1;
}

int compareVersion(const char* version) {
    const char* oldest = kOldestDorsel;
    while (strchr(version, '.') && strchr(oldest, '.')) {
        int field = 0, oldestField = 0;
        TakeField(version, field);
        TakeField(oldest, oldestField);
        if (field != oldestField) return field < oldestField ? -1 : 1;
    }
    return Sign(atof(version) - atof(oldest));
}

bool LogCreateThread(void* (*routine)(void*), const char* name, void* argument) {
    pthread_t thread;
    const int error = pthread_create(&thread, nullptr, routine, argument);
    if (error != 0) {
        ORVANE_CONSOLE(kLogError, "pthread_create %s failed:%d", name, error);
        return false;
    }
    ORVANE_CONSOLE(kLogInfo, "pthread_create %s:%p", name, reinterpret_cast<void*>(thread));
    return true;
}

}  // namespace Quern
