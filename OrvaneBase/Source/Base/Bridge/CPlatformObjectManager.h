// The native halves of script objects, by the id that the script layer gave them.
#ifndef ORVANE_BASE_BRIDGE_C_PLATFORM_OBJECT_MANAGER_H
#define ORVANE_BASE_BRIDGE_C_PLATFORM_OBJECT_MANAGER_H

#include <map>

#include "Orvane/IPlatformObjectManager.h"

namespace Quern {

// The process has three: one for plain halves, one for those that take requests, one for those that answer. One script
// object may have a half under its id in each. The static operations of IPlatformObjectManager, which make, hand out
// and destroy the three, are in CPlatformObjectManager.cpp.
//
// The manager deletes the objects that are removed. It forgets an object before it deletes it, so a destructor may call
// the manager: under its own id it finds nothing. Nothing is locked: every call comes on the script layer's thread.
class CPlatformObjectManager : public IPlatformObjectManager {
public:
    // Deletes what is left, as RemoveAll does.
    ~CPlatformObjectManager() override;

    // The object stays the manager's. Null for an unknown id.
    CPlatformObject* GetPlatformObject(unsigned long long objectId) override;
    // Takes the object over; null is ignored. The object that had the id before is forgotten and not deleted, so
    // whoever holds it may go on using it.
    void AddObject(unsigned long long objectId, CPlatformObject* object) override;
    // An unknown id is ignored.
    void RemoveObject(unsigned long long objectId) override;
    // Deletes all in order of their ids.
    void RemoveAll() override;

private:
    std::map<unsigned long long, CPlatformObject*> _objects;  // owned; by id
};

}  // namespace Quern

#endif
