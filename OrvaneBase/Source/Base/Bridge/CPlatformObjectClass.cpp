#include "Base/Bridge/CPlatformObjectClass.h"

#include <map>
#include <string>

using Quern::IPlatformObject;

namespace {

CPlatformObjectClass* g_instance = nullptr;

template <typename Entry>
using ByName = std::map<std::string, Entry*>;

// Never freed: initialisers of other libraries enter names before any of this library's own objects is sure to exist.
ByName<IPlatformObjectFactory>& Factories() {
    static auto* const factories = new ByName<IPlatformObjectFactory>;
    return *factories;
}

ByName<IPlatformObject>& Instances() {
    static auto* const instances = new ByName<IPlatformObject>;
    return *instances;
}

template <typename Entry>
void Register(ByName<Entry>& entries, const char* name, Entry* entry) {
    if (name && entry) entries[name] = entry;
}

template <typename Entry>
Entry* Find(const ByName<Entry>& entries, const char* name) {
    const auto found = entries.find(name);
    return found == entries.end() ? nullptr : found->second;
}

}  // namespace

CPlatformObjectClass* CPlatformObjectClass::GetInstance() {
    if (!g_instance) g_instance = new CPlatformObjectClass;
    return g_instance;
}

void CPlatformObjectClass::ReleaseInstance() {
    delete g_instance;
    g_instance = nullptr;
}

void CPlatformObjectClass::RegisterClassG(const char* name, IPlatformObjectFactory* factory) {
    Register(Factories(), name, factory);
}

void CPlatformObjectClass::RegisterInstance(const char* name, IPlatformObject* object) {
    Register(Instances(), name, object);
}

IPlatformObject* CPlatformObjectClass::Instance(const char* name) {
    if (!name) return nullptr;
    if (IPlatformObject* object = Find(Instances(), name)) return object;
    IPlatformObjectFactory* const factory = Find(Factories(), name);
    IPlatformObject* const object = factory ? factory->Create() : nullptr;
    if (object) object->SetObjectName(name);
    return object;
}

IPlatformObject* CPlatformObjectClass::Instance(const char* name, const char* suffix) {
    if (!name) return nullptr;
    return Instance((std::string(name) + (suffix ? suffix : "")).c_str());
}
