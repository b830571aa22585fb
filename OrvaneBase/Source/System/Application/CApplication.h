// The coarse stages of the application, told to native observers (Orvane/IApplicationObserver.h).
#ifndef ORVANE_SYSTEM_APPLICATION_C_APPLICATION_H
#define ORVANE_SYSTEM_APPLICATION_C_APPLICATION_H

#include <vector>

#include "Orvane/IApplicationObserver.h"
#include "System/Thread/Mutex.h"

namespace Quern {

// Any thread. A stage holds the lock while it walks over the observers. The lock is recursive, so that an observer may
// destroy others in a stage. If the observer that is being told, or one before it, goes, the next one is left out of
// that stage.
class CApplication {
public:
    // Made at the first call. ReleaseInstance forgets every observer; the emptied object stays, since another thread
    // may be inside it, and is the next instance too.
    static CApplication* GetInstance();
    static void ReleaseInstance();

    // Observers are not owned, and are told once however often they were added. Null is ignored.
    void AddObserver(IApplicationObserver* observer);
    void RemoveObserver(IApplicationObserver* observer);

    void OnCreate();
    void OnStart();
    void OnPause();
    void OnResume();
    void OnStop();
    void OnDestroy();

private:
    CApplication() = default;

    void TellObservers(void (IApplicationObserver::*stage)()) ORVANE_REQUIRES(_lock);

    CMutex _lock{true};
    std::vector<IApplicationObserver*> _observers ORVANE_GUARDED_BY(_lock);
};

}  // namespace Quern

#endif
