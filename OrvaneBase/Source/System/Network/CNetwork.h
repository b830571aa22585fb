// The network's state for the rest of the library, and changes of it delivered on the main thread. Orvane/INetwork.h
// tells the contract.
#ifndef ORVANE_SYSTEM_NETWORK_C_NETWORK_H
#define ORVANE_SYSTEM_NETWORK_C_NETWORK_H

#include <vector>

#include "Orvane/INetwork.h"
#include "System/Network/DetailNetworkInfo.h"
#include "System/Thread/Mutex.h"
#include "System/Thread/TargetBase.h"

namespace Quern {

class CNetwork final : public CTargetBase, public INetwork {
public:
    // Made at the first call and published by one exchange; the release is a quit callback. The object stays in memory
    // for good, since other threads may be inside it when it is released. Any thread.
    static CNetwork* GetInstance();
    // The instance if there is one, for what must not bring one to life: above all what may still come after the
    // library was taken down.
    static CNetwork* InstanceIfAny();
    // Drops the changes that are not delivered yet, the observers and the callback; the next GetInstance makes another
    // instance, and this one takes and tells nothing any more. Waits for a delivery that is under way on another
    // thread. An observer may call it: the delivery ends with that observer. Any thread.
    static void ReleaseInstance();

    ANetworkState GetNetworkState() override;
    _tagADetailNetworkInfo GetDetailNetworkInfo() override;
    void SetCallback(void (*callback)(ANetworkState)) override;
    void AddObserver(CNetworkObserver* observer) override;
    void RemoveObserver(CNetworkObserver* observer) override;

    // Logs the state and queues its delivery. Main thread.
    void OnNetworkStateChanged(ANetworkState state);

private:
    CNetwork();
    ~CNetwork() override = default;  // of one that was never published

    static void init();
    static void uninit() {}
    void OnNetworkStateChangedOnUIThread(void* state);
    void ForgetListeners();

    // Held over a whole delivery, so that RemoveObserver waits for it; recursive, so that an observer may call it.
    CMutex _mutex{true};
    std::vector<CNetworkObserver*> _observers ORVANE_GUARDED_BY(_mutex);  // not owned
    void (*_callback)(ANetworkState) ORVANE_GUARDED_BY(_mutex) = nullptr;
    bool _isReleased ORVANE_GUARDED_BY(_mutex) = false;
    CNetwork* _releasedBefore = nullptr;
};

}  // namespace Quern

#endif
