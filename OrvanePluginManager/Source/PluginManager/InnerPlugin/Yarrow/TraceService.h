// The service "YARROW": the live spans of the process, which of them are wanted, and their way to the data plugin.
//
// Tracing's locks, in the order in which one may be taken while another is held:
//
//   WWWTaskBase::_sMutex    by the HTTP tasks, around a data listener's call, which may trace
//   TraceService::_mutex    over each operation, the calls to the login and the data plugin among them
//   TraceIdManager::_mutex  over the first trace id: its file, and the making of the request for more
//   SpanContext::_mutex
//
// All but the first are recursive for a plugin, or a callback of the log, that traces from inside. Under each the locks
// of settings and log may be taken. A task is made, asked and told its listener under ours, for which the tasks take
// leaf locks and their own; none of ours is held where one is destroyed or where an answer is taken, so that _sMutex is
// never waited for under them.
#ifndef ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_YARROW_TRACE_SERVICE_H
#define ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_YARROW_TRACE_SERVICE_H

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Base/Container/AString.h"
#include "Orvane/ISpanContext.h"
#include "Orvane/ITraceService.h"
#include "PluginManager/InnerPlugin/Yarrow/TraceIdManager.h"
#include "System/Thread/Mutex.h"

namespace Orvane::Plugin {

class TraceService final : public ITraceService {
public:
    // Made at the first call, by whichever thread, and published without a lock: of two made at once one goes again,
    // and its lines are in the log twice. The settings are those of that moment.
    static TraceService* GetInstance();
    // Leaves live spans behind. With none of tracing's locks held, and nobody inside.
    static void ReleaseInstance();
    ~TraceService() override;

    const char* GetName() const override;
    const char* GetPluginName() const override;
    bool IsEnabled() const override;
    const char* GetTraceId() override;
    bool IsReady(const char* publicType) override;
    const char* CreateContext(const char* parentContext, const char* publicType, const char* privateType) override;
    bool FlushContext(const char* context, YarrowDataType type, const char* key, const char* value) override;
    bool ReportContext(const char* context) override;
    bool DestroyContext(const char* context) override;

    // The steps of the above. They take the lock again where they touch what it guards.

    virtual void initTargetList();
    virtual bool isTargetHit(const char* publicType);
    // As TraceIdManager::GenSpanId; false for a size below 1 and without a manager too.
    virtual bool genSpanId(char* out, int size);
    // A new span with its ids and constant fields, and the open id if there is a login. Null without an id.
    virtual ISpanContext* _createContext(ISpanContext* parent, const char* publicType, const char* privateType);
    // Keeps the span under its id. One that had the id goes out of the table and is left behind. False for null.
    virtual bool _insert(ISpanContext* context);
    // Takes the span out of the table, for the caller to keep. Null if there is none.
    virtual ISpanContext* _pop(const char* sid);
    virtual void _reportContext(ISpanContext* context);
    // Clears the caller's pointer.
    virtual void _destroyContext(ISpanContext*& context);

private:
    TraceService();

    static void SetOpenId(ISpanContext& context);
    void SetField(ISpanContext& context, const char* key, const char* value);

    static std::atomic<TraceService*> s_pInstance;

    std::map<std::string, ISpanContext*, std::less<>> _contexts;  // by span id; owned. This to _targetMode under _mutex
    const std::vector<std::string> _reportKeys;                   // in the order of the report
    Quern::AString _traceId;                                      // what GetTraceId's pointer leads to
    Quern::CMutex _mutex{true};
    bool _isEnabled;  // constant once made
    std::vector<std::string> _whiteList, _blackList;
    int _targetMode = 1;
    const std::unique_ptr<TraceIdManager> _traceIdManager;
};

}  // namespace Orvane::Plugin

#endif
