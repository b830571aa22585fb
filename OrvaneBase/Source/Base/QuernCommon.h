// The one place that knows which project, channel and user the process serves.
//
// Not locked: the fields are set early, on the main thread, and treated as stable from then on.
#ifndef ORVANE_BASE_QUERN_COMMON_H
#define ORVANE_BASE_QUERN_COMMON_H

#include "Base/Container/AString.h"

namespace Quern {

class QuernCommon {
public:
    // Made at the first call: while the library loads, by QuernInitializer.
    static QuernCommon* GetInstance();
    static void ReleaseInstance();

    void SetProjectName(const char* name) { _projectName = name; }
    // "Orvane" unless it was set.
    const char* GetProjectName() const { return _projectName.c_str(); }

    // Keeps who the user is. Returns whether the pair was stored for the next run.
    bool SetUserInfo(const char* channelId, const char* openId);
    // Valid until the next SetUserInfo; empty if unknown. Never null.
    const char* GetChannelID();
    const char* GetOpenID();
    // The game's id in the application's manifest; empty if unknown. Never null.
    const char* GetGameID();

private:
    QuernCommon();

    static QuernCommon* s_pInstance;

    AString _projectName;
    AString _channelId;
    AString _openId;
    AString _gameId;
};

// Names the project. One object of it is made while the library loads, so that QuernCommon stands before any caller.
class QuernInitializer {
public:
    QuernInitializer() : QuernInitializer("Orvane") {}
    explicit QuernInitializer(const char* projectName) { QuernCommon::GetInstance()->SetProjectName(projectName); }
};

}  // namespace Quern

#endif
