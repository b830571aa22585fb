// The coarse stages of the application, told to native observers (Orvane/IApplicationObserver.h).
#ifndef ORVANE_SYSTEM_APPLICATION_C_APPLICATION_H
#define ORVANE_SYSTEM_APPLICATION_C_APPLICATION_H

#include <vector>

#include "Orvane/IApplicationObserver.h"
#include "System/Thread/Mutex.h"

namespace Quern {

// Any thread. A stage holds the lock over its whole walk; it is recursive, so that a stage may destroy observers: one
// that goes while the walk is at it or past it costs its successor the stage.
class CApplication {
public:
    // Made at the first call. ReleaseInstance forgets every observer; the emptied object stays, since another thread
    // may be inside it, and is the next instance too.
    static CApplication* GetInstance();
    static void ReleaseInstance();

    // Observers are not owned and stand once. Null is ignored.
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
