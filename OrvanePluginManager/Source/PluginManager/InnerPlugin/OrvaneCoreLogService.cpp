#include "PluginManager/InnerPlugin/OrvaneCoreLogService.h"

#include "Base/Configure/Configure.h"
#include "Base/CoreModule.h"
#include "Base/MakeOnce.h"
#include "Storage/Log/Logger.h"

namespace Orvane::Plugin {

std::atomic<OrvaneCoreLogSerivce*> OrvaneCoreLogSerivce::s_pInstance{nullptr};

OrvaneCoreLogSerivce* OrvaneCoreLogSerivce::GetInstance() {
    return Quern::MakeOnce(s_pInstance, [] { return new OrvaneCoreLogSerivce; });
}

void OrvaneCoreLogSerivce::ReleaseInstance() {
    delete s_pInstance.exchange(nullptr);
}

const char* OrvaneCoreLogSerivce::GetName() const {
    return "LOG";
}

const char* OrvaneCoreLogSerivce::GetPluginName() const {
    return Quern::kCoreModule;
}

int OrvaneCoreLogSerivce::GetVersion() {
    return 1;
}

ILogger* OrvaneCoreLogSerivce::GetLogger(PluginBase* plugin) {
    const Quern::CCritical guard(&_mutex);
    const char* name = plugin->GetName();
    if (!name) name = "";
    const auto found = _loggers.find(name);
    if (found != _loggers.end()) return found->second;
    // Made and observed under _mutex, so that one name never has two loggers; entered only then, under the lock that
    // readers take, so that no reader waits for a logger's making.
    auto* logger = new Quern::Logger(name);
    Configure::GetInstance()->AddObserver(name, logger);
    const Quern::CCritical change(&_changeMutex);
    _loggers.emplace(name, logger);
    return logger;
}

LoggerCollection* OrvaneCoreLogSerivce::GetLoggerCollection() {
    return &_loggers;
}

LoggerCollection OrvaneCoreLogSerivce::CopyOfCollection() {
    const Quern::CCritical guard(&_changeMutex);
    return _loggers;
}

}  // namespace Orvane::Plugin
