// The network's state for the rest of the library, and changes of it delivered on the main thread. Orvane/INetwork.h
// tells the contract.
#ifndef ORVANE_SYSTEM_NETWORK_C_NETWORK_H
#define ORVANE_SYSTEM_NETWORK_C_NETWORK_H

#include <memory>
#include <vector>

#include "Orvane/INetwork.h"
#include "System/Network/DetailNetworkInfo.h"
#include "System/Thread/Mutex.h"
#include "System/Thread/TargetBase.h"

namespace Quern {

class CNetwork final : public CTargetBase, public INetwork {
public:
    // Made at the first call and published by one exchange; the release is a quit callback. Any thread.
    static CNetwork* GetInstance();
    // The instance if there is one, for what must not bring one to life: above all what may still come after the
    // library was taken down.
    static CNetwork* InstanceIfAny();
    // Drops the changes that are not delivered yet, and the instance. On the thread that delivers, or while nothing is
    // delivered. An observer may call it: the delivery ends with that observer.
    static void ReleaseInstance();

    ANetworkState GetNetworkState() override;
    _tagADetailNetworkInfo GetDetailNetworkInfo() override;
    void SetCallback(void (*callback)(ANetworkState)) override;
    void AddObserver(CNetworkObserver* observer) override;
    void RemoveObserver(CNetworkObserver* observer) override;

    // Logs the state and queues its delivery. Main thread.
    void OnNetworkStateChanged(ANetworkState state);

private:
    // Outlives the instance while a delivery is under way.
    struct Listeners {
        // Held over a whole delivery, so that RemoveObserver waits for it; recursive, so that an observer may call it.
        CMutex _mutex{true};
        std::vector<CNetworkObserver*> _observers ORVANE_GUARDED_BY(_mutex);  // not owned
        void (*_callback)(ANetworkState) ORVANE_GUARDED_BY(_mutex) = nullptr;
    };

    CNetwork();
    ~CNetwork() override;

    static void init();
    static void uninit() {}
    void OnNetworkStateChangedOnUIThread(void* state);

    const std::shared_ptr<Listeners> _listeners = std::make_shared<Listeners>();
};

}  // namespace Quern

#endif
