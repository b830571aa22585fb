// Tracing in five calls, for the game and its script layer: the exported functions orvanecore_onetrace_* end here.
#ifndef ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_YARROW_ONE_TRACE_SERVICE_H
#define ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_YARROW_ONE_TRACE_SERVICE_H

#include <atomic>

#include "Orvane/IOneTraceService.h"

namespace Orvane {

// Each call goes to the function sg_* of the same job (Orvane/ITraceService.h), in the core plugin's name and with the
// games' public type, "0". Those find the trace service anew at each call, and give null or do nothing without it, as
// before the launch, when the core plugin is not in the host yet. Arguments and results are told in
// Orvane/IOneTraceService.h. Without state. Any thread.
class OneTraceService final : public IOneTraceService {
public:
    const char* GetTraceId() override;
    const char* CreateContext(const char* parentContext, const char* privateType) override;
    void SpanStart(const char* context, const char* name, const char* locName, const char* rmtName) override;
    void SpanFlush(const char* context, const char* key, const char* value) override;
    void SpanFinish(const char* context, const char* errCode, const char* errMsg) override;

private:
    friend class IOneTraceService;  // its two static functions, in OneTraceService.cpp, make and release the object
    static std::atomic<IOneTraceService*> s_pInstance;
};

}  // namespace Orvane

#endif
