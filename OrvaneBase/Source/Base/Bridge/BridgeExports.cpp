// The script layer's objects as it creates and removes them.
#include "Base/Bridge/CPlatformObjectClass.h"
#include "Orvane/OrvaneCore.h"
#include "Orvane/PlatformObject.h"

using Quern::CPlatformObject;
using Quern::IPlatformObject;
using Quern::IPlatformObjectManager;

namespace {

// False for what is no CPlatformObject, which stays with who registered its maker.
bool Adopt(IPlatformObject* made, uint64_t objectId, IPlatformObjectManager* (*manager)()) {
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
    Adopt(classes.Instance(className), objectId, IPlatformObjectManager::GetInstance);
    const bool takesRequests =
        Adopt(classes.Instance(className, ".REQ"), objectId, IPlatformObjectManager::GetReqInstance);
    const bool answers = Adopt(classes.Instance(className, ".RESP"), objectId, IPlatformObjectManager::GetRespInstance);
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
