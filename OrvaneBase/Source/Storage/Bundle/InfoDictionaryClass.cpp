#include "Storage/Bundle/InfoDictionaryClass.h"

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
