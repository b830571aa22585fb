// Thresholds of all loggers of the process, for the game's script layer.
#ifndef ORVANE_STORAGE_LOG_SDK_LOG_H
#define ORVANE_STORAGE_LOG_SDK_LOG_H

#include <atomic>

#include "Orvane/LogPriority.h"

namespace Orvane {

// Has no state. Any thread.
class OrvaneSDKLog {
public:
    // Made at the first call, by whichever thread.
    static OrvaneSDKLog* GetInstance();
    // No thread may be in one of its operations.
    static void ReleaseInstance();

    // "OrvaneCore" is the library's own logger; an unknown name is ignored.
    void SetLogLevel(const char* module, ALogPriority level);
    // Every logger of the collection but one named "OrvaneCore", and then the library's own.
    void SetAllLogLevel(ALogPriority level);

private:
    static std::atomic<OrvaneSDKLog*> s_pInstance;
};

}  // namespace Orvane

#endif
