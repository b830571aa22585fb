// The script layer's objects as it creates and removes them.
#include "Base/Bridge/CPlatformObjectClass.h"
#include "Orvane/OrvaneCore.h"
#include "Orvane/PlatformObject.h"

using Quern::CPlatformObject;
using Quern::IPlatformObject;
using Quern::IPlatformObjectManager;

namespace {

// Gives the object its id, and keeps it under that in a manager. Returns false, and leaves ownership with the factory,
// if `made` is not a CPlatformObject.
bool KeepUnderId(IPlatformObject* made, uint64_t objectId, IPlatformObjectManager* (*manager)()) {
    auto* const object = dynamic_cast<CPlatformObject*>(made);
    if (!object) return false;
    object->SetObjectId(objectId);
    manager()->AddObject(objectId, object);
    return true;
}

}  // namespace

bool CreatePlatformObject(const char* className, uint64_t objectId) {
    if (!className || !*className) return false;
    CPlatformObjectClass& classes = *CPlatformObjectClass::GetInstance();
    KeepUnderId(classes.Instance(className), objectId, IPlatformObjectManager::GetInstance);
    const bool takesRequests =
        KeepUnderId(classes.Instance(className, ".REQ"), objectId, IPlatformObjectManager::GetReqInstance);
    const bool answers =
        KeepUnderId(classes.Instance(className, ".RESP"), objectId, IPlatformObjectManager::GetRespInstance);
    return takesRequests || answers;
}

bool addPlatformObject(uint64_t objectId, const char* className) {
    return CreatePlatformObject(className, objectId);
}

void removePlatformObject(uint64_t objectId) {
    IPlatformObjectManager::GetReqInstance()->RemoveObject(objectId);
    IPlatformObjectManager::GetRespInstance()->RemoveObject(objectId);
}

int quern_arbor_object_get_len(uint64_t objectId) {
    IPlatformObjectManager::GetReqInstance()->GetPlatformObject(objectId);
    return 0;
}

int quern_arbor_object_read_buffer(uint64_t objectId, char* buffer, int capacity) {
    return 0;
}
