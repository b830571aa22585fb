// The bridge as libraries of native halves reach it: by the name of a run-time class.
#include "Base/Bridge/CPlatformObjectClass.h"
#include "Base/Bridge/PlatformCallbacks.h"
#include "Base/RunTimeClass.h"
#include "Orvane/IPlatformBridge.h"

namespace Quern {
namespace {

class PlatformBridge final : public IPlatformBridge {
public:
    void RegisterClassG(const char* name, IPlatformObjectFactory* factory) override {
        CPlatformObjectClass::GetInstance()->RegisterClassG(name, factory);
    }
    void RegisterInstance(const char* name, IPlatformObject* object) override {
        CPlatformObjectClass::GetInstance()->RegisterInstance(name, object);
    }

    IPlatformObjectManager* GetManager() override { return IPlatformObjectManager::GetInstance(); }
    IPlatformObjectManager* GetReqManager() override { return IPlatformObjectManager::GetReqInstance(); }
    IPlatformObjectManager* GetRespManager() override { return IPlatformObjectManager::GetRespInstance(); }

    void SendMessage(uint64_t objectId, const char* method, const char* message) override {
        _callbacks.message.Call(objectId, method, message);
    }
    void SendStruct(uint64_t objectId, const char* method, void* data) override {
        _callbacks.structure.Call(objectId, method, data);
    }
    void SendResult(uint64_t objectId, const char* method, int result) override {
        _callbacks.result.Call(objectId, method, result);
    }
    void SendResultStruct(uint64_t objectId, const char* method, const char* result, int length) override {
        _callbacks.resultStruct.Call(objectId, method, result, length);
    }
    void SendBuffer(uint64_t objectId, const char* method, const char* buffer, int length) override {
        _callbacks.buffer.Call(objectId, method, buffer, length);
    }
    void SendResultBuffer(uint64_t objectId, const char* method, int result, const char* buffer, int length) override {
        _callbacks.resultBuffer.Call(objectId, method, result, buffer, length);
    }
    void SendResultStructBuffer(uint64_t objectId, const char* method, const char* result, int resultLength,
                                const char* buffer, int length) override {
        _callbacks.resultStructBuffer.Call(objectId, method, result, resultLength, buffer, length);
    }
    void SendVoidMethod(uint64_t objectId, int method) override { _callbacks.voidMethod.Call(objectId, method); }
    void SendVoidMethodParam(uint64_t objectId, int method, const char* parameter) override {
        _callbacks.voidMethodParam.Call(objectId, method, parameter);
    }
    void SendVoidMethodBuffer(uint64_t objectId, int method, const char* buffer, int length) override {
        _callbacks.voidMethodBuffer.Call(objectId, method, buffer, length);
    }

private:
    const PlatformCallbacks& _callbacks = PlatformCallbacks::Shared();
};

void* GetNativeBridge(orvane_object*, const char*, void* const*) {
    static PlatformBridge bridge;
    return static_cast<IPlatformBridge*>(&bridge);
}

}  // namespace

void RegisterPlatformBridgeClass() {
    RegisterRunTimeClass("OrvanePlatformBridge", {}, {{"getNativeBridge", GetNativeBridge}});
}

}  // namespace Quern
