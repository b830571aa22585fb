// The facade of the library for native callers.
#ifndef ORVANE_BASE_C_ORVANE_CORE_H
#define ORVANE_BASE_C_ORVANE_CORE_H

#include <atomic>

#include "Orvane/IOrvaneCore.h"

namespace Orvane {

// The operations are told in Orvane/IOrvaneCore.h. The object holds nothing: each call goes on to whoever does the
// work. It is there for its lifetime: whoever deletes it takes the base library down.
class COrvaneCore final : public IOrvaneCore {
public:
    // Made at the first call, and the base library's root with it. Any thread; a deleted one is followed by another.
    static COrvaneCore* GetInstance();
    // Does nothing, on purpose: callers release the facade and go on using it.
    static void ReleaseInstance();

    // Takes the base library down, as IBase::Release does. On the thread and under the rules that are told there.
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
