#include "Base/QuernCommon.h"

#include <json/json.h>

#include <memory>
#include <string>

#include "Base/Container/TrimBlanks.h"
// Upward: what is common to all comes from the manifest, the store, the device and the host's plugins.
#include "PluginManager/PluginManager.h"
#include "Storage/Bundle/BundleFactory.h"
#include "Storage/Bundle/SolidConfigReader.h"
#include "System/System/CSystem.h"

namespace Quern {
namespace {

constexpr char kUserSection[] = "OrvaneCore";
constexpr char kChannelKey[] = "channelid";
constexpr char kOpenIdKey[] = "openid";

const char* FromBundle(AString& field, const char* key) {
    if (field.empty()) field = BundleFactory::GetInstance()->GetDefaultBundle()->Get(kUserSection, key, "");
    return field.c_str();
}

// A text of the manifest without the blanks on both sides. Only blanks: tabs and line ends are part of it.
const char* FromManifest(AString& field, const char* section, const char* key) {
    if (!field.empty()) return field.c_str();
    const AString text = SolidConfigReader::GetString(section, key, "");
    const std::string_view trimmed = TrimBlanks(text.c_str());
    if (!trimmed.empty()) field = AString(trimmed.data(), static_cast<int>(trimmed.size()));
    return field.c_str();
}

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

std::atomic<QuernCommon*> QuernCommon::s_pInstance{nullptr};

// After a release the first caller may be any thread: of two, one installs its object and the other takes that.
QuernCommon* QuernCommon::GetInstance() {
    QuernCommon* instance = s_pInstance.load(std::memory_order_acquire);
    if (instance) return instance;
    std::unique_ptr<QuernCommon> made(new QuernCommon);
    if (!s_pInstance.compare_exchange_strong(instance, made.get(), std::memory_order_acq_rel)) return instance;
    return made.release();
}

void QuernCommon::ReleaseInstance() {
    static QuernCommon* lastReleased = nullptr;
    QuernCommon* const instance = s_pInstance.exchange(nullptr, std::memory_order_acq_rel);
    if (!instance) return;
    instance->_releasedBefore = lastReleased;
    lastReleased = instance;
}

QuernCommon::QuernCommon() : _projectName("Orvane") {}

bool QuernCommon::SetUserInfo(const char* channelId, const char* openId) {
    _channelId = channelId;
    _openId = openId;
    Bundle* bundle = BundleFactory::GetInstance()->GetDefaultBundle();
    bundle->Set(kUserSection, kChannelKey, channelId);
    return bundle->Set(kUserSection, kOpenIdKey, openId);
}

const char* QuernCommon::GetChannelID() {
    return FromBundle(_channelId, kChannelKey);
}

const char* QuernCommon::GetOpenID() {
    return FromBundle(_openId, kOpenIdKey);
}

const char* QuernCommon::GetGameID() {
    return FromManifest(_gameId, "Orvane", "GameId");
}

const char* QuernCommon::GetTransceiverUrl() {
    return FromManifest(_transceiverUrl, "OrvaneCore", "TransceiverUrl");
}

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
