// The front of the three diagnostics: ping, traceroute, name lookup.
//
// A diagnostic runs on one of five workers, makes its outcome into a text (ResultText.h) and hands that to the main
// thread, where the text is split by position into a result object and given to the caller's function.
#ifndef ORVANE_SYSTEM_NETWORK_CHECKER_A_NETWORK_CHECKER_H
#define ORVANE_SYSTEM_NETWORK_CHECKER_A_NETWORK_CHECKER_H

#include <atomic>
#include <memory>
#include <vector>

#include "Orvane/INetworkChecker.h"
#include "System/NetworkChecker/NetworkCheckerState.h"
#include "System/NetworkChecker/NetworkResults.h"
#include "System/Thread/TargetBase.h"

namespace Quern {

// Diagnostics outlive the checker: they hold the state that they share with it, and once it is gone they free their
// result and say nothing.
class ANetworkChecker : public CTargetBase, public INetworkChecker {
public:
    // Made at the first call, on any thread.
    static ANetworkChecker* GetInstance();
    // On the main thread. Results that wait for it are dropped.
    static void ReleaseInstance();

    void Ping(const char* host, int requestId, void (*callback)(PingResult&), unsigned char timeOut,
              unsigned char packageNum) override;
    void TraceRoute(const char* host, int requestId, void (*callback)(TraceRouteResult&),
                    unsigned char maxTtl) override;
    void NSLookup(const char* host, int requestId, void (*callback)(NSLookupResult&)) override;

    // Take a text made by new[] and put it on its way to the main thread, where it is deleted. With a null callback
    // they log that and return, and the text is not released. Any thread.
    void NotifyPingFinish(char* text, void (*callback)(PingResult&));
    void NotifyTraceRouteFinish(char* text, void (*callback)(TraceRouteResult&));
    void NotifyNSLookupFinish(char* text, void (*callback)(NSLookupResult&));

    // Main thread: split the text, tell the callback (a pointer to a function, as an object pointer), delete the text.
    // Without a text nothing happens; without a callback, or with too few fields, only the deletion.
    void HandlePingResultOnUIThread(void* text, void* callback);
    void HandleTraceRouteResultOnUIThread(void* text, void* callback);
    void HandleNSLookupResultOnUIThread(void* text, void* callback);

private:
    ANetworkChecker();
    ~ANetworkChecker() override;

    void Init();
    template <typename Callback>
    void Post(void (ANetworkChecker::*handler)(void*, void*), char* text, Callback callback);
    // Takes the text out of those on their way; it goes with the result.
    std::unique_ptr<char[]> TakePosted(void* text);

    static std::atomic<ANetworkChecker*> s_pInstance;

    std::shared_ptr<NetworkCheckerState> _state;
    std::vector<std::unique_ptr<char[]>> _posted;  // on their way to the main thread; guarded by the state's mutex
};

}  // namespace Quern

#endif
