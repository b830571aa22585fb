// The script layer's ten callbacks. Each is a field of its own, read by whichever thread sends: the script layer sets
// them before any native work starts, and they are cleared at the take-down alone.
#ifndef ORVANE_BASE_BRIDGE_PLATFORM_CALLBACKS_H
#define ORVANE_BASE_BRIDGE_PLATFORM_CALLBACKS_H

#include <atomic>

#include "Orvane/OrvaneCore.h"

namespace Quern {

template <typename Callback>
class CallbackSlot {
public:
    // Null clears the slot.
    void Set(Callback callback) { _callback.store(callback, std::memory_order_relaxed); }

    template <typename... Arguments>
    void Call(Arguments... arguments) const {
        if (const Callback callback = _callback.load(std::memory_order_relaxed)) callback(arguments...);
    }

private:
    std::atomic<Callback> _callback = nullptr;
};

struct PlatformCallbacks {
    CallbackSlot<ArborSendMessageCallback> message;
    CallbackSlot<ArborSendStructCallback> structure;
    CallbackSlot<ArborSendResultCallback> result;
    CallbackSlot<ArborSendResultStructCallback> resultStruct;
    CallbackSlot<ArborSendBufferCallback> buffer;
    CallbackSlot<ArborSendResultBufferCallback> resultBuffer;
    CallbackSlot<ArborSendResultStructBufferCallback> resultStructBuffer;
    CallbackSlot<ArborSendVoidMethodCallback> voidMethod;
    CallbackSlot<ArborSendVoidMethodParamCallback> voidMethodParam;
    CallbackSlot<ArborSendVoidMethodBufferCallback> voidMethodBuffer;

    static PlatformCallbacks& Shared();
};

}  // namespace Quern

#endif
