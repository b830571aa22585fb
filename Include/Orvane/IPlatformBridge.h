/// \file IPlatformBridge.h
/// What the library does for native halves of script objects that live in other libraries. C++11.
///
/// Native code has no need to call this itself: Orvane/PlatformObject.h wraps it.
#ifndef ORVANE_I_PLATFORM_BRIDGE_H
#define ORVANE_I_PLATFORM_BRIDGE_H

#include <cstdint>

#include "Orvane/IPlatformObject.h"
#include "Orvane/IPlatformObjectManager.h"

namespace Quern {

/// The order of the virtual operations is a contract between libraries. The one instance lives as long as the process.
class IPlatformBridge {
public:
    /// See gs_OrvaneRegisterPlatformClass and gs_OrvaneRegisterPlatformInstance.
    virtual void RegisterClassG(const char* name, IPlatformObjectFactory* factory) = 0;
    virtual void RegisterInstance(const char* name, IPlatformObject* object) = 0;

    /// The managers of the plain objects, of the requests and of the responses; never null, and gone after the library
    /// is taken down, so they are asked for anew at each use. On the thread of the script layer.
    virtual IPlatformObjectManager* GetManager() = 0;
    virtual IPlatformObjectManager* GetReqManager() = 0;
    virtual IPlatformObjectManager* GetRespManager() = 0;

    /// Each calls the script layer's callback of the same name (Orvane/OrvaneCore.h), if one is set, on the calling
    /// thread.
    virtual void SendMessage(uint64_t objectId, const char* method, const char* message) = 0;
    virtual void SendStruct(uint64_t objectId, const char* method, void* data) = 0;
    virtual void SendResult(uint64_t objectId, const char* method, int result) = 0;
    virtual void SendResultStruct(uint64_t objectId, const char* method, const char* result, int length) = 0;
    virtual void SendBuffer(uint64_t objectId, const char* method, const char* buffer, int length) = 0;
    virtual void SendResultBuffer(uint64_t objectId, const char* method, int result, const char* buffer,
                                  int length) = 0;
    virtual void SendResultStructBuffer(uint64_t objectId, const char* method, const char* result, int resultLength,
                                        const char* buffer, int length) = 0;
    virtual void SendVoidMethod(uint64_t objectId, int method) = 0;
    virtual void SendVoidMethodParam(uint64_t objectId, int method, const char* parameter) = 0;
    virtual void SendVoidMethodBuffer(uint64_t objectId, int method, const char* buffer, int length) = 0;

protected:
    ~IPlatformBridge() = default;
};

}  // namespace Quern

#endif
