#include "PluginManager/InnerPlugin/OrvaneCoreInnerPlugin.h"

#include <cstring>

#include "Base/CoreModule.h"
#include "Base/XLog.h"
#include "Orvane/OrvaneCore.h"
#include "PluginManager/InnerPlugin/ConfigFileService.h"
#include "PluginManager/InnerPlugin/OrvaneCoreLogService.h"
#include "PluginManager/InnerPlugin/OrvaneCoreReportService.h"
#include "PluginManager/InnerPlugin/RemoteConfigService.h"
#include "PluginManager/InnerPlugin/Yarrow/TraceService.h"

// The core plugin's names and its table of services. The stages are in OrvaneCoreInnerPluginStages.cpp.
namespace Orvane::Plugin {

const char* OrvaneCoreInnerPlugin::GetName() const {
    return Quern::kCoreModule;
}

const char* OrvaneCoreInnerPlugin::GetVersion() const {
    return orvanecore_get_version();
}

IPluginService* OrvaneCoreInnerPlugin::GetServiceByName(const char* serviceName) {
    ORVANE_LOG_DEBUG("OrvaneCoreInnerPlugin::GetServiceByName serviceName:%s", serviceName ? serviceName : "(null)");
    if (!serviceName) return nullptr;
    // Each service is made at the first question for it: what nobody asks for costs nothing.
    if (strcmp(serviceName, "COREREPORT") == 0) return OrvaneCoreReportSerivce::GetInstance();
    if (strcmp(serviceName, "YARROW") == 0) return TraceService::GetInstance();
    if (strcmp(serviceName, "REMOTECONFIG") == 0) return RemoteConfigSerivce::GetInstance();
    if (strcmp(serviceName, "LOG") == 0) return OrvaneCoreLogSerivce::GetInstance();
    if (strcmp(serviceName, "REMOTECONFIGEX") == 0) return RemoteConfigExSerivce::GetInstance();
    if (strcmp(serviceName, "CONFIGFILE") == 0) return ConfigFileSerivce::GetInstance();
    return nullptr;
}

}  // namespace Orvane::Plugin
