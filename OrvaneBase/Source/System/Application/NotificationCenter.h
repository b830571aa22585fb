// The process's notification centre: named notifications and their observers. Libraries outside this one reach it
// through Orvane/NotificationCenter.h, which tells the rules.
#ifndef ORVANE_SYSTEM_APPLICATION_NOTIFICATION_CENTER_H
#define ORVANE_SYSTEM_APPLICATION_NOTIFICATION_CENTER_H

#include "Base/Seam.h"
#include "Orvane/NotificationCenter.h"

namespace Quern {

// Any thread.
class NotificationCenter : public Seam<NotificationCenter> {
public:
    // A null function or name is ignored.
    virtual void AddObserver(void* observer, OrvaneNotificationFunction function, const char* name) = 0;
    // A null name: under all names.
    virtual void RemoveObserver(void* observer, const char* name) = 0;
    // Tells every observer of the name, in the order of their entry, before it returns. An observer that is removed
    // meanwhile is not told any more, one that is entered meanwhile not yet.
    virtual void Post(const char* name, void* object) = 0;
};

template <>
std::shared_ptr<NotificationCenter> Seam<NotificationCenter>::MakeBuiltIn();

}  // namespace Quern

#endif
