#include "PluginManager/InnerPlugin/OrvaneCoreInnerPlugin.h"

#include <cstring>

#include "Base/XLog.h"
#include "Orvane/OrvaneCore.h"
#include "PluginManager/InnerPlugin/ConfigFileService.h"
#include "PluginManager/InnerPlugin/OrvaneCoreLogService.h"
#include "PluginManager/InnerPlugin/OrvaneCoreReportService.h"
#include "PluginManager/InnerPlugin/RemoteConfigService.h"
#include "PluginManager/InnerPlugin/Yarrow/TraceService.h"

namespace Orvane::Plugin {

const char* OrvaneCoreInnerPlugin::GetName() const {
    return "OrvaneCore";
}

const char* OrvaneCoreInnerPlugin::GetVersion() const {
    return orvanecore_get_version();
}

void OrvaneCoreInnerPlugin::OnStartup(IServiceRegister* services) {
    ORVANE_LOG_INFO("OrvaneCoreInnerPlugin::OnStartup");
    if (!services) return;
    // A declaration for the host's record; look-ups never ask it, and not every service is in it.
    for (const char* name : {"COREREPORT", "YARROW", "REMOTECONFIG", "CONFIGFILE"})
        services->Register(name);
}

void OrvaneCoreInnerPlugin::OnPostStartup() {
    ORVANE_LOG_INFO("OrvaneCoreInnerPlugin::OnPostStartup");
}

void OrvaneCoreInnerPlugin::OnPreShutdown() {
    ORVANE_LOG_INFO("OrvaneCoreInnerPlugin::OnPreShutdown");
}

void OrvaneCoreInnerPlugin::OnShutdown() {
    ORVANE_LOG_INFO("OrvaneCoreInnerPlugin::OnShutdown");
}

IPluginService* OrvaneCoreInnerPlugin::GetServiceByName(const char* serviceName) {
    ORVANE_LOG_DEBUG("OrvaneCoreInnerPlugin::GetServiceByName serviceName:%s", serviceName ? serviceName : "(null)");
    if (!serviceName) return nullptr;
    if (strcmp(serviceName, "COREREPORT") == 0) return OrvaneCoreReportSerivce::GetInstance();
    if (strcmp(serviceName, "YARROW") == 0) return TraceService::GetInstance();
    if (strcmp(serviceName, "REMOTECONFIG") == 0) return RemoteConfigSerivce::GetInstance();
    if (strcmp(serviceName, "LOG") == 0) return OrvaneCoreLogSerivce::GetInstance();
    if (strcmp(serviceName, "REMOTECONFIGEX") == 0) return RemoteConfigExSerivce::GetInstance();
    if (strcmp(serviceName, "CONFIGFILE") == 0) return ConfigFileSerivce::GetInstance();
    return nullptr;
}

}  // namespace Orvane::Plugin
