// The manifest as a host names its file before the library reads one: by the name of a run-time class.
#include <cstdint>

#include "Base/RunTimeClass.h"
#include "Storage/Bundle/InfoDictionary.h"

namespace Quern {
namespace {

void* PerformSetPath(orvane_object*, const char*, void* const* arguments) {
    return reinterpret_cast<void*>(intptr_t{InfoDictionary::SetPath(static_cast<const char*>(arguments[0]))});
}

}  // namespace

void RegisterInfoDictionaryClass() {
    RegisterRunTimeClass("OrvaneInfoDictionary", {}, {{"setPath:", PerformSetPath}});
}

}  // namespace Quern
