// The script layer's ten callbacks. Each is a field of its own, read by whichever thread sends: the script layer sets
// them before any native work starts, and they are cleared at the take-down alone.
#ifndef ORVANE_BASE_BRIDGE_PLATFORM_CALLBACKS_H
#define ORVANE_BASE_BRIDGE_PLATFORM_CALLBACKS_H

#include <atomic>

#include "Orvane/OrvaneCore.h"

namespace Quern {

// One callback. The script layer owns the function and keeps it callable until it clears the slot. Any thread; relaxed
// order is enough, because the function is all that is handed over.
template <typename Callback>
class CallbackSlot {
public:
    // Null clears the slot.
    void Set(Callback callback) { _callback.store(callback, std::memory_order_relaxed); }

    // Calls what is set, on the caller's thread, with no lock held. Does nothing for an empty slot.
    template <typename... Arguments>
    void Call(Arguments... arguments) const {
        if (const Callback callback = _callback.load(std::memory_order_relaxed)) callback(arguments...);
    }

private:
    std::atomic<Callback> _callback = nullptr;
};

// One slot for each form of a call from a native half to its script object. The first argument is always the object's
// id; the others are named at the slot. Texts and bytes are valid for the call only, and a length counts bytes.
struct PlatformCallbacks {
    // These name the script method by a text.
    CallbackSlot<ArborSendMessageCallback> message;                        // method, text
    CallbackSlot<ArborSendStructCallback> structure;                       // method, pointer to the caller's structure
    CallbackSlot<ArborSendResultCallback> result;                          // method, number
    CallbackSlot<ArborSendResultStructCallback> resultStruct;              // method, result as bytes, length
    CallbackSlot<ArborSendBufferCallback> buffer;                          // method, bytes, length
    CallbackSlot<ArborSendResultBufferCallback> resultBuffer;              // method, number, bytes, length
    CallbackSlot<ArborSendResultStructBufferCallback> resultStructBuffer;  // the same, then bytes, length
    // These name it by a number.
    CallbackSlot<ArborSendVoidMethodCallback> voidMethod;              // method
    CallbackSlot<ArborSendVoidMethodParamCallback> voidMethodParam;    // method, text
    CallbackSlot<ArborSendVoidMethodBufferCallback> voidMethodBuffer;  // method, bytes, length

    // Those of the process; never destroyed, since native halves may send until it ends.
    static PlatformCallbacks& Shared();
};

}  // namespace Quern

#endif
