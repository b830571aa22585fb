#include "Base/QuernCommon.h"

#include "Base/Container/AString.h"
#include "Base/CoreModule.h"
#include "Base/MakeOnce.h"
#include "Base/ProjectName.h"
#include "Storage/Bundle/BundleFactory.h"
#include "Storage/Bundle/GameId.h"
#include "Storage/Bundle/SolidConfigReader.h"

namespace Quern {
namespace {

constexpr char kChannelKey[] = "channelid";
constexpr char kOpenIdKey[] = "openid";

const char* FromBundle(KeptText& field, const char* key) {
    if (*field.Get() == '\0')
        field.SetIfEmpty(AString(BundleFactory::GetInstance()->GetDefaultBundle()->Get(kCoreModule, key, "")).c_str());
    return field.Get();
}

}  // namespace

std::atomic<QuernCommon*> QuernCommon::s_pInstance{nullptr};

// After a release the first caller may be any thread.
QuernCommon* QuernCommon::GetInstance() {
    return MakeOnce(s_pInstance, [] { return new QuernCommon; });
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
    _channelId.Set(channelId);
    _openId.Set(openId);
    BundleImpl& bundle = *BundleFactory::GetInstance()->GetDefaultBundle();
    BundleImpl::Batch batch(bundle);
    bundle.SetIfDifferent(kCoreModule, kChannelKey, channelId);
    const bool isWritten = bundle.SetIfDifferent(kCoreModule, kOpenIdKey, openId);
    return batch.Commit() && isWritten;
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
    if (*_transceiverUrl.Get() == '\0')
        _transceiverUrl.SetIfEmpty(SolidConfigReader::GetStringWithoutBlanks(kCoreModule, "TransceiverUrl").c_str());
    return _transceiverUrl.Get();
}

}  // namespace Quern
