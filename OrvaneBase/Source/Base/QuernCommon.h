// The one place that knows which project, channel and user the process serves.
//
// Project name and game id are leaves of their own (ProjectName, GameId), which lower units ask. Any thread, but for
// ReleaseInstance. The texts handed out stay valid; who the user is are two texts, each of which changes by itself.
#ifndef ORVANE_BASE_QUERN_COMMON_H
#define ORVANE_BASE_QUERN_COMMON_H

#include <atomic>

#include "Base/KeptText.h"

namespace Quern {

class QuernCommon {
public:
    // Made at the first call: while the library loads, by QuernInitializer.
    static QuernCommon* GetInstance();
    // The next call makes a new one. The old one stays in memory, untouched: the sweep of the log folder, or a worker
    // at its last operation, may be reading it, and neither is waited for. On the thread that takes the library down.
    static void ReleaseInstance();

    void SetProjectName(const char* name);
    // "Orvane" unless it was set.
    const char* GetProjectName() const;

    // Keeps who the user is, in the default bundle too, for the next run: both in one save, and none where the bundle
    // holds the same already. Returns the result of the last write.
    // REQUIRES: neither is null.
    bool SetUserInfo(const char* channelId, const char* openId);
    // As long as nobody told: what the last run stored. Empty if unknown, never null.
    const char* GetChannelID();
    const char* GetOpenID();
    // From the application's manifest, without the blanks around them. Looked up until found, then kept; empty if
    // unknown, never null.
    const char* GetGameID();
    const char* GetTransceiverUrl();

    // What every request tells of the application, the user, the device and the installed plugins: a JSON object and a
    // newline. Channel and open id are those told or looked up so far; it does not look them up itself. Valid until
    // the next call on the same thread. (CommonParameters.cpp, above the plugins it lists.)
    const char* GetComParams();

private:
    QuernCommon();

    static std::atomic<QuernCommon*> s_pInstance;

    KeptText _channelId;
    KeptText _openId;
    KeptText _transceiverUrl;
    QuernCommon* _releasedBefore = nullptr;
};

// Names the project. One object of it is made while the library loads, so that QuernCommon stands before any caller.
class QuernInitializer {
public:
    QuernInitializer() : QuernInitializer("Orvane") {}
    explicit QuernInitializer(const char* projectName) { QuernCommon::GetInstance()->SetProjectName(projectName); }
};

}  // namespace Quern

#endif
