#include "PluginManager/InnerPlugin/Yarrow/OneTraceService.h"

#include "Base/MakeOnce.h"
#include "Orvane/ITraceService.h"
#include "PluginManager/InnerPlugin/OrvaneCoreInnerPlugin.h"  // upward: the way to the service begins at the core plugin

namespace Orvane {
namespace {

Plugin::PluginBase* CorePlugin() {
    return Plugin::Singleton<Plugin::OrvaneCoreInnerPlugin>::GetInstance();
}

}  // namespace

std::atomic<IOneTraceService*> OneTraceService::s_pInstance{nullptr};

IOneTraceService* IOneTraceService::GetInstance() {
    return Quern::MakeOnce(OneTraceService::s_pInstance, [] { return new OneTraceService; });
}

void IOneTraceService::ReleaseInstance() {
    delete OneTraceService::s_pInstance.exchange(nullptr, std::memory_order_acq_rel);
}

const char* OneTraceService::GetTraceId() {
    return Plugin::sg_get_traceid(CorePlugin());
}

const char* OneTraceService::CreateContext(const char* parentContext, const char* privateType) {
    return Plugin::sg_create_context(CorePlugin(), parentContext, privateType);
}

void OneTraceService::SpanStart(const char* context, const char* name, const char* locName, const char* rmtName) {
    Plugin::sg_span_start(CorePlugin(), context, name, locName, rmtName);
}

void OneTraceService::SpanFlush(const char* context, const char* key, const char* value) {
    Plugin::sg_span_flush(CorePlugin(), context, key, value);
}

void OneTraceService::SpanFinish(const char* context, const char* errCode, const char* errMsg) {
    Plugin::sg_span_finish(CorePlugin(), context, errCode, errMsg);
}

}  // namespace Orvane
