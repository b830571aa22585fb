/// \file IPlatformObjectManager.h
/// The native halves by the ids of the script layer. C++11.
#ifndef ORVANE_I_PLATFORM_OBJECT_MANAGER_H
#define ORVANE_I_PLATFORM_OBJECT_MANAGER_H

namespace Quern {

class CPlatformObject;

/// Owns the objects that are added. Nothing is locked: on the thread of the script layer alone. The order of the
/// virtual operations is a contract between libraries.
class IPlatformObjectManager {
public:
    virtual ~IPlatformObjectManager() = default;
    /// \return the object, which stays the manager's; null for an unknown id
    virtual CPlatformObject* GetPlatformObject(unsigned long long objectId) = 0;
    /// Takes over an object; null is ignored. A known id gets the new object, and the old one is forgotten, not
    /// deleted.
    virtual void AddObject(unsigned long long objectId, CPlatformObject* object) = 0;
    /// Forgets the object, then deletes it. An unknown id is ignored.
    virtual void RemoveObject(unsigned long long objectId) = 0;
    /// Deletes every object in the order of the ids.
    virtual void RemoveAll() = 0;

    /// The managers of the plain objects, of the requests and of the responses, each made at its first use. Inside the
    /// library only; other libraries go through IPlatformBridge.
    static IPlatformObjectManager* GetInstance();
    static IPlatformObjectManager* GetReqInstance();
    static IPlatformObjectManager* GetRespInstance();
    /// Deletes every object of the three, plain ones first and responses last, and then the managers. The names of
    /// classes stay registered. Inside the library only.
    static void DestroyAll();
};

}  // namespace Quern

#endif
