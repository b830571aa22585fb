#ifndef ORVANE_BASE_BRIDGE_C_PLATFORM_OBJECT_MANAGER_H
#define ORVANE_BASE_BRIDGE_C_PLATFORM_OBJECT_MANAGER_H

#include <map>

#include "Orvane/IPlatformObjectManager.h"

namespace Quern {

// A destructor of an object may look up, remove and send; what it finds under its own id is no longer itself.
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
