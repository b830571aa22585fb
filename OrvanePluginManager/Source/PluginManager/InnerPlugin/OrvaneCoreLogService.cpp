#include "PluginManager/InnerPlugin/OrvaneCoreLogService.h"

#include "Base/Configure/Configure.h"
#include "Storage/Log/Logger.h"

namespace Orvane::Plugin {

OrvaneCoreLogSerivce* OrvaneCoreLogSerivce::s_pInstance = nullptr;

OrvaneCoreLogSerivce* OrvaneCoreLogSerivce::GetInstance() {
    if (!s_pInstance) s_pInstance = new OrvaneCoreLogSerivce;
    return s_pInstance;
}

void OrvaneCoreLogSerivce::ReleaseInstance() {
    delete s_pInstance;
    s_pInstance = nullptr;
}

const char* OrvaneCoreLogSerivce::GetName() const {
    return "LOG";
}

const char* OrvaneCoreLogSerivce::GetPluginName() const {
    return "OrvaneCore";
}

int OrvaneCoreLogSerivce::GetVersion() {
    return 1;
}

ILogger* OrvaneCoreLogSerivce::GetLogger(PluginBase* plugin) {
    const Quern::CCritical guard(&_mutex);
    const char* name = plugin->GetName();
    if (!name) name = "";
    Quern::Logger*& logger = _loggers[name];
    if (!logger) {
        logger = new Quern::Logger(name);
        Configure::GetInstance()->AddObserver(name, logger);
    }
    return logger;
}

LoggerCollection* OrvaneCoreLogSerivce::GetLoggerCollection() {
    return &_loggers;
}

}  // namespace Orvane::Plugin
