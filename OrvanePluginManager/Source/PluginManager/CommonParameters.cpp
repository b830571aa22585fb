// The common parameters of QuernCommon, at the top of the house: they tell of the device and of the installed plugins.
#include <json/json.h>

#include <string>

#include "Base/QuernCommon.h"
#include "PluginManager/PluginManager.h"
#include "System/System/CSystem.h"

namespace Quern {
namespace {

Json::Value InstalledPlugins() {
    const Orvane::Plugin::PluginCollection plugins =
        *Orvane::Plugin::PluginManager::GetInstance()->GetPluginCollection();
    Json::Value list(Json::objectValue);
    for (const auto& [name, descriptor] : plugins)
        list[name]["ver"] = descriptor.pluginVersion;
    return list;
}

// As the library's compact writer has it: no blanks, and a newline at the end.
std::string WriteCompact(const Json::Value& value) {
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "";
    return Json::writeString(builder, value) + "\n";
}

}  // namespace

const char* QuernCommon::GetComParams() {
    Json::Value params(Json::objectValue);
    params["bid"] = CSystem::GetBundleId();
    params["cid"] = _channelId.c_str();
    params["oid"] = _openId.c_str();
    params["did"] = CSystem::GetUdid();
    params["mtype"] = CSystem::GetModel();
    params["mfrs"] = CSystem::GetDeviceBrand();
    params["os"] = "iOS";
    params["os_ver"] = CSystem::GetSysVersion();
    params["app_ver"] = CSystem::GetAppVersion();
    params["gid"] = GetGameID();
    params["sdk_list"] = InstalledPlugins();
    _comParams = WriteCompact(params).c_str();
    return _comParams.c_str();
}

}  // namespace Quern
