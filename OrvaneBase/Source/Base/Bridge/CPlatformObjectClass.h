// The factories of native halves, by the class name that the script layer gives. Other libraries enter theirs through
// gs_OrvaneRegisterPlatformClass (Orvane/PlatformObject.h).
#ifndef ORVANE_BASE_BRIDGE_C_PLATFORM_OBJECT_CLASS_H
#define ORVANE_BASE_BRIDGE_C_PLATFORM_OBJECT_CLASS_H

#include "Orvane/IPlatformObject.h"

// The names outlive the singleton: they are entered while libraries load, which happens once. Nothing is locked: on the
// thread of the script layer, or while libraries load.
class CPlatformObjectClass {
public:
    static CPlatformObjectClass* GetInstance();
    static void ReleaseInstance();

    // A null argument is ignored; a known name gets the new factory or object. Neither is owned.
    void RegisterClassG(const char* name, IPlatformObjectFactory* factory);
    void RegisterInstance(const char* name, Quern::IPlatformObject* object);

    // The object registered under the name, else a new one by the name's factory, which bears the name; null if there
    // is neither or the factory made none.
    Quern::IPlatformObject* Instance(const char* name);
    // The same under the name and a suffix, which may be null.
    Quern::IPlatformObject* Instance(const char* name, const char* suffix);

private:
    CPlatformObjectClass() = default;
};

#endif
