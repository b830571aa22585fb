/// \file IPlatformObject.h
/// The native half of an object of the game's script layer, and who makes it by the name of its class. C++11.
///
/// A native half derives from Quern::CPlatformObject (Orvane/PlatformObject.h), not from the interface here. It is
/// compiled with RTTI: the library asks each object whether it is a CPlatformObject, and asking one without type
/// information ends the process.
#ifndef ORVANE_I_PLATFORM_OBJECT_H
#define ORVANE_I_PLATFORM_OBJECT_H

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "Orvane/Export.h"

#if !defined(__GXX_RTTI) && !defined(_CPPRTTI)
#error "Native halves of script objects need RTTI: compile without -fno-rtti"
#endif

namespace Quern {

/// The order of the fields and of the virtual operations is a contract between libraries.
class ORVANE_EXPORT IPlatformObject {
public:
    IPlatformObject() : _objectId(0), _objectName(nullptr) {}
    IPlatformObject(const IPlatformObject&) = delete;
    IPlatformObject& operator=(const IPlatformObject&) = delete;
    virtual ~IPlatformObject() { std::free(_objectName); }

    /// The id under which the script layer knows the object; 0 before it has one.
    uint64_t GetObjectId() const { return _objectId; }
    void SetObjectId(uint64_t objectId) { _objectId = objectId; }

    /// The name of the class under which the object was made; null before it has one. Owned by the object.
    const char* GetObjectName() const { return _objectName; }
    /// Keeps a copy of the text; null is ignored. A copy that was kept before is left behind, so that whoever holds it
    /// may go on reading it.
    void SetObjectName(const char* name) {
        if (!name) return;
        const std::size_t size = std::strlen(name) + 1;
        _objectName = static_cast<char*>(std::memcpy(std::malloc(size), name, size));
    }

private:
    uint64_t _objectId;
    char* _objectName;
};

}  // namespace Quern

/// Makes the objects of one class. Registered once and never given back, so it lives as long as the process.
class IPlatformObjectFactory {
public:
    /// \return a new object, which the library deletes if it is a Quern::CPlatformObject and which otherwise stays the
    ///         factory's; or null. On the thread of the script layer.
    virtual Quern::IPlatformObject* Create() = 0;

protected:
    ~IPlatformObjectFactory() = default;  // not virtual: the table holds the one operation alone
};

#endif
