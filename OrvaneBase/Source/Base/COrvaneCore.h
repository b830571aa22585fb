// The facade of the library for native callers.
#ifndef ORVANE_BASE_C_ORVANE_CORE_H
#define ORVANE_BASE_C_ORVANE_CORE_H

#include <atomic>

#include "Orvane/IOrvaneCore.h"

namespace Orvane {

class COrvaneCore final : public IOrvaneCore {
public:
    // Made at the first call, and the base library's root with it. Any thread; a deleted one is followed by another.
    static COrvaneCore* GetInstance();
    // Does nothing, on purpose: callers release the facade and go on using it.
    static void ReleaseInstance();

    // Takes the base library down.
    ~COrvaneCore() override;
    int Initialize() override;
    void SetLogLevel(int level) override;
    const char* GetVersion() override;
    void SetRemoteConfigUrl(const char* url) override;
    void ClearRemoteConfigCache() override;

private:
    COrvaneCore() = default;

    static std::atomic<COrvaneCore*> s_pInstance;
};

}  // namespace Orvane

#endif
