// Tracing in five calls, for the game and its script layer.
#ifndef ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_YARROW_ONE_TRACE_SERVICE_H
#define ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_YARROW_ONE_TRACE_SERVICE_H

#include <atomic>

#include "Orvane/IOneTraceService.h"

namespace Orvane {

class OneTraceService final : public IOneTraceService {
public:
    const char* GetTraceId() override;
    const char* CreateContext(const char* parentContext, const char* privateType) override;
    void SpanStart(const char* context, const char* name, const char* locName, const char* rmtName) override;
    void SpanFlush(const char* context, const char* key, const char* value) override;
    void SpanFinish(const char* context, const char* errCode, const char* errMsg) override;

private:
    friend class IOneTraceService;
    static std::atomic<IOneTraceService*> s_pInstance;
};

}  // namespace Orvane

#endif
