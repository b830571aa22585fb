/// \file PlatformObject.h
/// The base of the native halves of script objects, for libraries that do not link to the host. Header-only: link
/// liborvaneruntime.so and nothing else. C++11.
///
/// The script layer creates an object by a class name X and an id of its choosing. That makes up to three native
/// halves, from the factories that are registered under X, "X.REQ" (takes requests) and "X.RESP" (answers them). A half
/// answers by its SendUnity... operations, which end in the script layer's callbacks (Orvane/OrvaneCore.h).
#ifndef ORVANE_PLATFORM_OBJECT_H
#define ORVANE_PLATFORM_OBJECT_H

#include <atomic>

#include "Orvane/IPlatformBridge.h"
#include "Orvane/RunTime.h"

/// Finds the process's bridge through the run-time class "OrvanePlatformBridge". Any thread.
/// \return null in a process without the host. Never owned by the caller.
inline Quern::IPlatformBridge* gs_GetOrvanePlatformBridge() {
    static std::atomic<Quern::IPlatformBridge*> s_bridge(nullptr);
    Quern::IPlatformBridge* bridge = s_bridge.load(std::memory_order_acquire);
    if (bridge) return bridge;
    const orvane_class* cls = orvane_class_lookup("OrvanePlatformBridge");
    bridge = static_cast<Quern::IPlatformBridge*>(orvane_class_perform(cls, "getNativeBridge", nullptr));
    s_bridge.store(bridge, std::memory_order_release);
    return bridge;
}

/// Names a class of native halves; a known name gets the new factory. A null argument is ignored. As a rule from an
/// initialiser that runs while the caller's library loads, else on the thread of the script layer.
/// \return false without the host
inline bool gs_OrvaneRegisterPlatformClass(const char* name, IPlatformObjectFactory* factory) {
    Quern::IPlatformBridge* bridge = gs_GetOrvanePlatformBridge();
    if (bridge) bridge->RegisterClassG(name, factory);
    return bridge != nullptr;
}

/// Names one object that is given out instead of new ones of that class. It goes to the first id that is created under
/// the name, and is deleted with that id: it serves a single one. Otherwise as above.
inline bool gs_OrvaneRegisterPlatformInstance(const char* name, Quern::IPlatformObject* object) {
    Quern::IPlatformBridge* bridge = gs_GetOrvanePlatformBridge();
    if (bridge) bridge->RegisterInstance(name, object);
    return bridge != nullptr;
}

namespace Quern {

/// Owned by the library from its creation on. Each SendUnity operation gives its arguments, led by the object's id, to
/// one callback of the script layer, on the calling thread, and does nothing while that callback is not set. Texts and
/// buffers need to be valid for the call only; lengths are in bytes. A destructor may still send.
class ORVANE_EXPORT CPlatformObject : public IPlatformObject {
public:
    void SendUnityMessage(const char* method, const char* message) {
        if (IPlatformBridge* bridge = gs_GetOrvanePlatformBridge()) bridge->SendMessage(GetObjectId(), method, message);
    }
    void SendUnityStruct(const char* method, void* data) {
        if (IPlatformBridge* bridge = gs_GetOrvanePlatformBridge()) bridge->SendStruct(GetObjectId(), method, data);
    }
    void SendUnityResult(const char* method, int result) {
        if (IPlatformBridge* bridge = gs_GetOrvanePlatformBridge()) bridge->SendResult(GetObjectId(), method, result);
    }
    void SendUnityResult(const char* method, const char* result, int length) {
        if (IPlatformBridge* bridge = gs_GetOrvanePlatformBridge())
            bridge->SendResultStruct(GetObjectId(), method, result, length);
    }
    void SendUnityBuffer(const char* method, const char* buffer, int length) {
        if (IPlatformBridge* bridge = gs_GetOrvanePlatformBridge())
            bridge->SendBuffer(GetObjectId(), method, buffer, length);
    }
    void SendUnityBuffer(const char* method, int result, const char* buffer, int length) {
        if (IPlatformBridge* bridge = gs_GetOrvanePlatformBridge())
            bridge->SendResultBuffer(GetObjectId(), method, result, buffer, length);
    }
    void SendUnityBuffer(const char* method, const char* result, int resultLength, const char* buffer, int length) {
        if (IPlatformBridge* bridge = gs_GetOrvanePlatformBridge())
            bridge->SendResultStructBuffer(GetObjectId(), method, result, resultLength, buffer, length);
    }
    void SendUnityMethod(int method) {
        if (IPlatformBridge* bridge = gs_GetOrvanePlatformBridge()) bridge->SendVoidMethod(GetObjectId(), method);
    }
    void SendUnityMethod(int method, const char* parameter) {
        if (IPlatformBridge* bridge = gs_GetOrvanePlatformBridge())
            bridge->SendVoidMethodParam(GetObjectId(), method, parameter);
    }
    void SendUnityMethod(int method, const char* buffer, int length) {
        if (IPlatformBridge* bridge = gs_GetOrvanePlatformBridge())
            bridge->SendVoidMethodBuffer(GetObjectId(), method, buffer, length);
    }

    /// Clears every callback of the script layer. Inside the library only, once no object is left.
    static void ClearEnvironment();
};

}  // namespace Quern

#endif
