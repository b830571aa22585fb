#include "Storage/Log/SDKLog.h"

#include <cstring>

#include "Base/CoreModule.h"
#include "Base/MakeOnce.h"
#include "Base/XLog.h"
#include "Orvane/OrvaneCore.h"
#include "PluginManager/InnerPlugin/OrvaneCoreLogService.h"
#include "Storage/Log/Logger.h"

namespace Orvane {
namespace {

// A copy, so that no lock of the service is held while a logger is told.
Plugin::LoggerCollection CopyOfCollection() {
    return Plugin::OrvaneCoreLogSerivce::GetInstance()->CopyOfCollection();
}

}  // namespace

std::atomic<OrvaneSDKLog*> OrvaneSDKLog::s_pInstance{nullptr};

OrvaneSDKLog* OrvaneSDKLog::GetInstance() {
    return Quern::MakeOnce(s_pInstance, [] { return new OrvaneSDKLog; });
}

void OrvaneSDKLog::ReleaseInstance() {
    delete s_pInstance.exchange(nullptr);
}

void OrvaneSDKLog::SetLogLevel(const char* module, ALogPriority level) {
    if (!module) return;
    if (strcmp(module, Quern::kCoreModule) == 0) {
        Quern::SetQuernLogLevel(level);
        return;
    }
    const Plugin::LoggerCollection loggers = CopyOfCollection();
    const auto found = loggers.find(module);
    if (found != loggers.end()) found->second->SetLogLevel(level);
}

void OrvaneSDKLog::SetAllLogLevel(ALogPriority level) {
    for (const auto& [name, logger] : CopyOfCollection())
        if (name != Quern::kCoreModule) logger->SetLogLevel(level);
    Quern::SetQuernLogLevel(level);
}

}  // namespace Orvane

void OrvaneSDKLog_setLogLevel(const char* module, ALogPriority level) {
    Orvane::OrvaneSDKLog::GetInstance()->SetLogLevel(module, level);
}

void OrvaneSDKLog_setAllLogLevel(ALogPriority level) {
    Orvane::OrvaneSDKLog::GetInstance()->SetAllLogLevel(level);
}
