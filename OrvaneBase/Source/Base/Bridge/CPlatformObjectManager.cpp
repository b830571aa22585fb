#include "Base/Bridge/CPlatformObjectManager.h"

#include <utility>

#include "Base/Bridge/CPlatformObjectClass.h"
#include "Orvane/PlatformObject.h"

namespace Quern {
namespace {

IPlatformObjectManager* g_plain = nullptr;
IPlatformObjectManager* g_requests = nullptr;
IPlatformObjectManager* g_responses = nullptr;

IPlatformObjectManager* MakeIfMissing(IPlatformObjectManager*& manager) {
    if (!manager) manager = new CPlatformObjectManager;
    return manager;
}

}  // namespace

IPlatformObjectManager* IPlatformObjectManager::GetInstance() {
    return MakeIfMissing(g_plain);
}

IPlatformObjectManager* IPlatformObjectManager::GetReqInstance() {
    return MakeIfMissing(g_requests);
}

IPlatformObjectManager* IPlatformObjectManager::GetRespInstance() {
    return MakeIfMissing(g_responses);
}

void IPlatformObjectManager::DestroyAll() {
    GetInstance()->RemoveAll();
    GetReqInstance()->RemoveAll();
    GetRespInstance()->RemoveAll();
    CPlatformObjectClass::ReleaseInstance();
    for (IPlatformObjectManager** manager : {&g_plain, &g_requests, &g_responses}) {
        delete *manager;
        *manager = nullptr;
    }
}

CPlatformObjectManager::~CPlatformObjectManager() {
    CPlatformObjectManager::RemoveAll();
}

CPlatformObject* CPlatformObjectManager::GetPlatformObject(unsigned long long objectId) {
    const auto found = _objects.find(objectId);
    return found == _objects.end() ? nullptr : found->second;
}

void CPlatformObjectManager::AddObject(unsigned long long objectId, CPlatformObject* object) {
    if (object) _objects[objectId] = object;
}

void CPlatformObjectManager::RemoveObject(unsigned long long objectId) {
    const auto found = _objects.find(objectId);
    if (found == _objects.end()) return;
    CPlatformObject* const object = found->second;
    _objects.erase(found);
    delete object;
}

void CPlatformObjectManager::RemoveAll() {
    // From id to id, looking at the map anew each time: a destructor may remove objects, its own id included.
    for (auto entry = _objects.begin(); entry != _objects.end();) {
        const unsigned long long objectId = entry->first;
        delete std::exchange(entry->second, nullptr);
        entry = _objects.upper_bound(objectId);
    }
    _objects.clear();
}

}  // namespace Quern
