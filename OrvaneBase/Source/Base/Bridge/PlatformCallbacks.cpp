#include "Base/Bridge/PlatformCallbacks.h"

#include "Orvane/PlatformObject.h"

using Quern::PlatformCallbacks;

namespace {

// Ready before any code runs and never destroyed: a native half in another library may send from an initialiser, and
// until the process ends.
constinit PlatformCallbacks g_callbacks;

}  // namespace

namespace Quern {

PlatformCallbacks& PlatformCallbacks::Shared() {
    return g_callbacks;
}

// The one body of CPlatformObject that is not inline in its header: other libraries send, only this one clears.
void CPlatformObject::ClearEnvironment() {
    g_callbacks.message.Set(nullptr);
    g_callbacks.structure.Set(nullptr);
    g_callbacks.result.Set(nullptr);
    g_callbacks.resultStruct.Set(nullptr);
    g_callbacks.buffer.Set(nullptr);
    g_callbacks.resultBuffer.Set(nullptr);
    g_callbacks.resultStructBuffer.Set(nullptr);
    g_callbacks.voidMethod.Set(nullptr);
    g_callbacks.voidMethodParam.Set(nullptr);
    g_callbacks.voidMethodBuffer.Set(nullptr);
}

}  // namespace Quern

void setArborSendMessageCallback(ArborSendMessageCallback callback) {
    g_callbacks.message.Set(callback);
}

void setArborSendStructCallback(ArborSendStructCallback callback) {
    g_callbacks.structure.Set(callback);
}

void setArborSendResultCallback(ArborSendResultCallback callback) {
    g_callbacks.result.Set(callback);
}

void setArborSendResultStructCallback(ArborSendResultStructCallback callback) {
    g_callbacks.resultStruct.Set(callback);
}

void setArborSendBufferCallback(ArborSendBufferCallback callback) {
    g_callbacks.buffer.Set(callback);
}

void setArborSendResultBufferCallback(ArborSendResultBufferCallback callback) {
    g_callbacks.resultBuffer.Set(callback);
}

void setArborSendResultStructBufferCallback(ArborSendResultStructBufferCallback callback) {
    g_callbacks.resultStructBuffer.Set(callback);
}

void setArborSendVoidMethodCallback(ArborSendVoidMethodCallback callback) {
    g_callbacks.voidMethod.Set(callback);
}

void setArborSendVoidMethodParamCallback(ArborSendVoidMethodParamCallback callback) {
    g_callbacks.voidMethodParam.Set(callback);
}

void setArborSendVoidMethodBufferCallback(ArborSendVoidMethodBufferCallback callback) {
    g_callbacks.voidMethodBuffer.Set(callback);
}
