// The common parameters of QuernCommon. The body is here, and not beside the class, because it asks for the device and
// for the installed plugins, which are built on top of the class.
#include <json/json.h>

#include <string>

#include "Base/CompactJson.h"
#include "Base/QuernCommon.h"
#include "PluginManager/PluginManager.h"
#include "System/System/CSystem.h"

namespace Quern {
namespace {

Json::Value InstalledPlugins() {
    Json::Value list(Json::objectValue);
    for (const auto& [name, descriptor] : Orvane::Plugin::PluginManager::GetInstance()->CopyPlugins())
        list[name]["ver"] = descriptor.pluginVersion;
    return list;
}

}  // namespace

const char* QuernCommon::GetComParams() {
    Json::Value params(Json::objectValue);
    params["bid"] = CSystem::GetBundleId();
    params["cid"] = _channelId.Get();
    params["oid"] = _openId.Get();
    params["did"] = CSystem::GetUdid();
    params["mtype"] = CSystem::GetModel();
    params["mfrs"] = CSystem::GetDeviceBrand();
    params["os"] = "iOS";
    params["os_ver"] = CSystem::GetSysVersion();
    params["app_ver"] = CSystem::GetAppVersion();
    params["gid"] = GetGameID();
    params["sdk_list"] = InstalledPlugins();
    static thread_local std::string text;  // so that two threads at a time do not write over each other's
    text = WriteCompactJson(params);
    return text.c_str();
}

}  // namespace Quern
