#include "Base/QuernCommon.h"

#include <memory>

#include "Base/ProjectName.h"
#include "Storage/Bundle/BundleFactory.h"
#include "Storage/Bundle/GameId.h"
#include "Storage/Bundle/SolidConfigReader.h"

namespace Quern {
namespace {

constexpr char kUserSection[] = "OrvaneCore";
constexpr char kChannelKey[] = "channelid";
constexpr char kOpenIdKey[] = "openid";

const char* FromBundle(AString& field, const char* key) {
    if (field.empty()) field = BundleFactory::GetInstance()->GetDefaultBundle()->Get(kUserSection, key, "");
    return field.c_str();
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

QuernCommon::QuernCommon() {
    SetProjectName("Orvane");
}

void QuernCommon::SetProjectName(const char* name) {
    Quern::SetProjectName(name);
}

const char* QuernCommon::GetProjectName() const {
    return ProjectName();
}

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
    return GameId();
}

const char* QuernCommon::GetTransceiverUrl() {
    if (_transceiverUrl.Empty())
        _transceiverUrl = SolidConfigReader::GetStringWithoutBlanks("OrvaneCore", "TransceiverUrl");
    return _transceiverUrl.c_str();
}

}  // namespace Quern
