// The facade as the game's script layer calls it.
#include "Base/COrvaneCore.h"
#include "Base/QuernCommon.h"
#include "Base/XLog.h"
#include "Orvane/OrvaneCore.h"

using Orvane::COrvaneCore;
using Orvane::IOrvaneCore;

orvanecore_instance* orvanecore_getInstance() {
    return IOrvaneCore::GetInstance();
}

void orvanecore_releaseInstance() {
    ORVANE_LOG_EVENT(" orvanecore_release");
    COrvaneCore::ReleaseInstance();
}

int orvanecore_init() {
    ORVANE_LOG_EVENT(" orvanecore_init");
    return IOrvaneCore::GetInstance()->Initialize();
}

void orvanecore_setLogLevel(int level) {
    ORVANE_LOG_EVENT("orvanecore_setLogLevel:%d", level);
    IOrvaneCore::GetInstance()->SetLogLevel(level);
}

bool orvanecore_setUserInfo(const char* channelId, const char* openId) {
    ORVANE_LOG_EVENT("orvanecore_setUserInfo");
    return Quern::QuernCommon::GetInstance()->SetUserInfo(channelId, openId);
}

bool InitQuernObjectEnvironment() {
    AddApplicationQuitCallback(ReleaseQuernObjectEnvironment);
    return true;
}

void ReleaseQuernObjectEnvironment() {}
