#include "System/WWW/Task/WWWTaskBase.h"

#include "Base/XLog.h"

namespace Quern {

CMutex* WWWTaskBase::_sMutex = nullptr;
CMutex* WWWTaskBase::_setMutex = nullptr;
std::set<const WWWTaskBase*>* WWWTaskBase::_set = nullptr;

void WWWTaskBase::MakeLiveSet() {
    _sMutex = new CMutex(true);
    _setMutex = new CMutex;
    _set = new std::set<const WWWTaskBase*>;
}

WWWTaskBase::WWWTaskBase() {
    ORVANE_LOG_DEBUG("WWWTask %p", static_cast<void*>(this));
}

// For a derived class that has not left itself.
WWWTaskBase::~WWWTaskBase() {
    LeaveLiveSet();
}

void WWWTaskBase::EnterLiveSet() {
    const CCritical guard(_setMutex);
    _set->insert(this);
}

void WWWTaskBase::LeaveLiveSet() {
    const CCritical told(_sMutex);
    const CCritical guard(_setMutex);
    _set->erase(this);
}

bool WWWTaskBase::IsObjectRelease(const WWWTaskBase* task) {
    ORVANE_LOG_DEBUG("WWWTask::IsObjectRelease %p", static_cast<const void*>(task));
    const CCritical guard(_setMutex);
    return _set->find(task) == _set->end();
}

void WWWTaskBase::SetHttpHeader(const char* key, const char* value) {
    if (key && value) _headers[key] = value;
}

void WWWTaskBase::SetUrl(const char* url) {
    if (url) _url = url;
}

}  // namespace Quern
