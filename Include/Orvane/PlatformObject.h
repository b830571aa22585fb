/// \file PlatformObject.h
/// The base of the native halves of script objects, for libraries that do not link to the host. Header-only: link
/// liborvaneruntime.so and nothing else. C++11.
///
/// The script layer creates an object by a class name X and an id of its choosing. That makes up to three native
/// halves, from the factories that are registered under X, "X.REQ" (takes requests) and "X.RESP" (answers them). A half
/// answers by its SendUnity... operations, which end in the script layer's callbacks (Orvane/OrvaneCore.h).
///
///     struct Clock : Quern::CPlatformObject {
///         void Strike(int hour) { SendUnityResult("OnStrike", hour); }
///     };
///     struct ClockFactory : IPlatformObjectFactory {
///         Quern::IPlatformObject* Create() override { return new Clock; }
///     };
///     static ClockFactory g_factory;  // never given back
///     __attribute__((constructor)) static void Register() {
///         gs_OrvaneRegisterPlatformClass("Clock.RESP", &g_factory);
///     }
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
/// initialiser that runs while the caller's library loads, else on the thread of the script layer: nothing is locked.
/// \param name    copied; with the suffix ".REQ" or ".RESP", or without one
/// \param factory stays the caller's, and has to live as long as the process
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

/// A native half derives from this. Owned by the library from its creation on, which deletes a half for requests or
/// answers with its id, and a plain one at the take-down, on the thread of the script layer.
///
/// Each SendUnity operation gives its arguments, led by the object's id, to one callback of the script layer, on the
/// calling thread and under no lock. The id is 0 in a constructor, since the object gets it afterwards. An operation
/// does nothing while its callback is not set, and nothing without the host. Any thread may send, as long as the object
/// lives: whoever sends from a thread of his own ends that before the object goes. Texts and buffers stay the caller's
/// and need to be valid for the call only; they are handed on as they are, a null too. Lengths are in bytes, without a
/// terminator. A destructor may still send.
class ORVANE_EXPORT CPlatformObject : public IPlatformObject {
public:
    /// A method's name and a text. Ends in the callback of setArborSendMessageCallback.
    void SendUnityMessage(const char* method, const char* message) {
        if (IPlatformBridge* bridge = gs_GetOrvanePlatformBridge()) bridge->SendMessage(GetObjectId(), method, message);
    }
    /// A structure whose layout both sides know. Ends in that of setArborSendStructCallback.
    void SendUnityStruct(const char* method, void* data) {
        if (IPlatformBridge* bridge = gs_GetOrvanePlatformBridge()) bridge->SendStruct(GetObjectId(), method, data);
    }
    /// How a request went, as a number: setArborSendResultCallback.
    void SendUnityResult(const char* method, int result) {
        if (IPlatformBridge* bridge = gs_GetOrvanePlatformBridge()) bridge->SendResult(GetObjectId(), method, result);
    }
    /// The same as a record of `length` bytes: setArborSendResultStructCallback.
    void SendUnityResult(const char* method, const char* result, int length) {
        if (IPlatformBridge* bridge = gs_GetOrvanePlatformBridge())
            bridge->SendResultStruct(GetObjectId(), method, result, length);
    }
    /// Bytes without a result: setArborSendBufferCallback.
    void SendUnityBuffer(const char* method, const char* buffer, int length) {
        if (IPlatformBridge* bridge = gs_GetOrvanePlatformBridge())
            bridge->SendBuffer(GetObjectId(), method, buffer, length);
    }
    /// A number and bytes: setArborSendResultBufferCallback.
    void SendUnityBuffer(const char* method, int result, const char* buffer, int length) {
        if (IPlatformBridge* bridge = gs_GetOrvanePlatformBridge())
            bridge->SendResultBuffer(GetObjectId(), method, result, buffer, length);
    }
    /// A record and bytes: setArborSendResultStructBufferCallback.
    void SendUnityBuffer(const char* method, const char* result, int resultLength, const char* buffer, int length) {
        if (IPlatformBridge* bridge = gs_GetOrvanePlatformBridge())
            bridge->SendResultStructBuffer(GetObjectId(), method, result, resultLength, buffer, length);
    }
    /// A method by a number that both sides know, without more: setArborSendVoidMethodCallback.
    void SendUnityMethod(int method) {
        if (IPlatformBridge* bridge = gs_GetOrvanePlatformBridge()) bridge->SendVoidMethod(GetObjectId(), method);
    }
    /// The same with a text: setArborSendVoidMethodParamCallback.
    void SendUnityMethod(int method, const char* parameter) {
        if (IPlatformBridge* bridge = gs_GetOrvanePlatformBridge())
            bridge->SendVoidMethodParam(GetObjectId(), method, parameter);
    }
    /// The same with bytes: setArborSendVoidMethodBufferCallback.
    void SendUnityMethod(int method, const char* buffer, int length) {
        if (IPlatformBridge* bridge = gs_GetOrvanePlatformBridge())
            bridge->SendVoidMethodBuffer(GetObjectId(), method, buffer, length);
    }

    /// Clears every callback of the script layer. Inside the library only, once no object is left.
    static void ClearEnvironment();
};

}  // namespace Quern

#endif
