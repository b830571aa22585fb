// The one place that knows which project, channel and user the process serves.
//
// Project name and game id are leaves of their own (ProjectName, GameId), which lower units ask. The other fields are
// not locked: they are set early, on the main thread, and treated as stable from then on.
#ifndef ORVANE_BASE_QUERN_COMMON_H
#define ORVANE_BASE_QUERN_COMMON_H

#include <atomic>

#include "Base/Container/AString.h"

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

    // Keeps who the user is, in the default bundle too, for the next run. Returns the result of the last write.
    // REQUIRES: neither is null.
    bool SetUserInfo(const char* channelId, const char* openId);
    // As long as nobody told: what the last run stored. Valid until the next SetUserInfo; empty if unknown, never null.
    const char* GetChannelID();
    const char* GetOpenID();
    // From the application's manifest, without the blanks around them. Looked up until found, then kept; empty if
    // unknown, never null.
    const char* GetGameID();
    const char* GetTransceiverUrl();

    // What every request tells of the application, the user, the device and the installed plugins: a JSON object and a
    // newline. Channel and open id are those told or looked up so far; it does not look them up itself. Valid until
    // the next call on any thread: two threads at a time race. (CommonParameters.cpp, above the plugins it lists.)
    const char* GetComParams();

private:
    QuernCommon();

    static std::atomic<QuernCommon*> s_pInstance;

    AString _channelId;
    AString _openId;
    AString _transceiverUrl;
    AString _comParams;
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
