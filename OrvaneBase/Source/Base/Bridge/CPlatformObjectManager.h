// The native halves of script objects, by the id that the script layer gave them.
#ifndef ORVANE_BASE_BRIDGE_C_PLATFORM_OBJECT_MANAGER_H
#define ORVANE_BASE_BRIDGE_C_PLATFORM_OBJECT_MANAGER_H

#include <map>

#include "Orvane/IPlatformObjectManager.h"

namespace Quern {

// The manager deletes the objects that are removed. It forgets an object before it deletes it, so a destructor may call
// the manager: under its own id it finds nothing. Nothing is locked: every call comes on the script layer's thread.
class CPlatformObjectManager : public IPlatformObjectManager {
public:
    ~CPlatformObjectManager() override;

    CPlatformObject* GetPlatformObject(unsigned long long objectId) override;
    void AddObject(unsigned long long objectId, CPlatformObject* object) override;
    void RemoveObject(unsigned long long objectId) override;
    void RemoveAll() override;

private:
    std::map<unsigned long long, CPlatformObject*> _objects;
};

}  // namespace Quern

#endif
