// The sweep of old log files at start, in a thread of its own.

#include <pthread.h>

#include <memory>
#include <string>
#include <vector>

#include "PluginManager/PluginManager.h"  // upward: the sweep covers the modules that are plugins
#include "Storage/Log/FileLogger.h"
#include "Storage/Log/LogThread.h"
#include "Storage/Log/Logger.h"
#include "System/Thread/ThreadName.h"

namespace Quern {
namespace {

constexpr int kDefaultHours = 240;
constexpr int kNoCountLimit = -1;

void* RemoveOldLogFilesThread(void* argument) {
    const std::unique_ptr<std::vector<std::string>> plugins(static_cast<std::vector<std::string>*>(argument));
    pthread_detach(pthread_self());
    set_thread_name("RemoveOldLogFileThread");
    Orvane::Configure* configure = Orvane::Configure::GetInstance();
    for (const std::string& plugin : *plugins) {
        const char* section = plugin.c_str();
        const int hours = configure->GetInt(section, "LogHoursLimit", kDefaultHours);
        const int fileNumLimit = configure->GetInt(section, "LogFileNumLimit", kNoCountLimit);
        if (configure->GetBool(section, "LogFileCleanAuto", true))
            AFileLogger::RemoveOldLogFiles(section, hours, fileNumLimit);
    }
    return nullptr;
}

}  // namespace

void Logger::XLogInit() {
    // The plugins' names are taken here and not in the thread: those of the launch, however late the thread begins.
    auto plugins = std::make_unique<std::vector<std::string>>();
    for (const auto& entry : Orvane::Plugin::PluginManager::GetInstance()->CopyPlugins())
        plugins->push_back(entry.first);
    if (LogCreateThread(RemoveOldLogFilesThread, "RemoveOldLogFilesThread", plugins.get())) (void)plugins.release();
}

}  // namespace Quern
