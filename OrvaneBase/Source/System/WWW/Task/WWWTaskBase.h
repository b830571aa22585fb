// What all HTTP tasks share: address, headers, and the process-wide set of live tasks.
//
// A callback of the platform knows its task by a raw pointer, which may be dead by then. It asks the set, by the
// pointer's value alone: a new task at a dead one's address counts as alive.
//
// A task is in the set while its most derived part is whole: that class enters it last in its constructor and takes it
// out first in its destructor. Leaving waits for _sMutex, and so for a listener that is being told.
#ifndef ORVANE_SYSTEM_WWW_TASK_WWW_TASK_BASE_H
#define ORVANE_SYSTEM_WWW_TASK_WWW_TASK_BASE_H

#include <map>
#include <set>
#include <string>

#include "Orvane/WWWTask.h"
#include "System/Thread/Mutex.h"

namespace Quern {

class WWWTaskBase : virtual public WWWTask {
public:
    WWWTaskBase();
    ~WWWTaskBase() override;
    WWWTaskBase(const WWWTaskBase&) = delete;
    WWWTaskBase& operator=(const WWWTaskBase&) = delete;

    void SetHttpHeader(const char* key, const char* value) override;
    void SetUrl(const char* url) override;
    const char* GetUrl() override { return _url.c_str(); }

    // Whether the pointer is that of no live task; it is not looked into. Where another thread can destroy tasks, the
    // caller holds _sMutex, or the gate that this task's destructor passes.
    static bool IsObjectRelease(const WWWTaskBase* task);

    // Makes the statics. Once, while the library loads.
    static void MakeLiveSet();

    // Held around the calls of data listeners and of download progress, and while a task leaves the set; taken before
    // a task's own mutex. Recursive, so that a listener may use tasks. Never destroyed.
    static CMutex* _sMutex;

protected:
    void EnterLiveSet();
    void LeaveLiveSet();

    std::string _url;
    std::map<std::string, std::string> _headers;

private:
    // Making a task never waits for a listener: so the set has a leaf lock of its own.
    static CMutex* _setMutex;
    static std::set<const WWWTaskBase*>* _set;  // under _setMutex; never destroyed
};

}  // namespace Quern

#endif
