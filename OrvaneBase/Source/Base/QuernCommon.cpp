#include "Base/QuernCommon.h"

namespace Quern {

QuernCommon* QuernCommon::s_pInstance = nullptr;

QuernCommon* QuernCommon::GetInstance() {
    if (!s_pInstance) s_pInstance = new QuernCommon;
    return s_pInstance;
}

void QuernCommon::ReleaseInstance() {
    delete s_pInstance;
    s_pInstance = nullptr;
}

QuernCommon::QuernCommon() : _projectName("Orvane") {}

bool QuernCommon::SetUserInfo(const char* channelId, const char* openId) {
    _channelId = channelId;
    _openId = openId;
    return false;  // no store keeps the pair
}

const char* QuernCommon::GetChannelID() {
    return _channelId.c_str();
}

const char* QuernCommon::GetOpenID() {
    return _openId.c_str();
}

const char* QuernCommon::GetGameID() {
    return _gameId.c_str();
}

}  // namespace Quern
