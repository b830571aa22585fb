/// \file ITraceService.h
/// The service "YARROW" of the plugin "OrvaneCore": spans of a distributed trace. Slot order is a binary contract.
///
/// A span's way: IsEnabled and IsReady tell whether it is wanted; CreateContext makes it and gives its text;
/// FlushContext with "name" starts its clock and with "errcode" stops it, and sets whatever else is to be known of it;
/// ReportContext sends it; DestroyContext ends it. The functions below the class do these steps with the tests in
/// front.
#ifndef ORVANE_I_TRACE_SERVICE_H
#define ORVANE_I_TRACE_SERVICE_H

#include <stdint.h>

#include "Orvane/IPluginService.h"
#include "Orvane/PluginBase.h"

namespace Orvane {
namespace Plugin {

/// What FlushContext sets. A value that is neither is possible; see there.
enum YarrowDataType : int32_t {
    kYarrowReportField = 1,  ///< a field of the report
    kYarrowUserTag = 2,      ///< one of the caller's own tags, which travel as one field
};

/// The live spans of the process, by their texts (ISpanContext.h). A text of no live span, null among them, gives false
/// and nothing else happens.
///
/// Any thread, several at a time. One lock is held while an operation runs, also over the calls to the login plugin
/// (CreateContext, ReportContext) and to the data plugin (ReportContext): these may trace from inside the call, but
/// must not wait for another thread that traces, nor destroy an HTTP task, which waits for a listener that may be
/// tracing. Nor may a callback of the log trace, which runs under the log's lock.
///
/// A span's text is part of the span and goes with it: whoever may end a span twice, or use it on two threads, keeps a
/// copy of the text and gives that to each call.
class ITraceService : public IPluginService {
public:
    /// Whether the setting "YarrowEnable" was on when the service was made. No other operation asks this.
    virtual bool IsEnabled() const = 0;
    /// \return the trace id of this run of the process, the same at every call and valid as long as the service: one
    ///         that the server issued, or a stand-in of the device's own. Never empty. The first call reads a file and
    ///         may send a request, for which nobody waits.
    virtual const char* GetTraceId() = 0;
    /// Whether spans of that public type are wanted: by the setting "YarrowTargetMode" all (1), those in
    /// "YarrowWhiteList" (2), all but those in "YarrowBlackList" (3), else none. Types in a list are separated by "|".
    /// \return false for null
    virtual bool IsReady(const char* publicType) = 0;
    /// Makes a span.
    /// \param parentContext the text of the span above it; null, or what is no such text, makes a root
    /// \param publicType what IsReady was asked; null is "-1"
    /// \param privateType the caller's own kind; null is "0"
    /// \return the span's text, valid until DestroyContext; null if there is no id for it
    virtual const char* CreateContext(const char* parentContext, const char* publicType, const char* privateType) = 0;
    /// Sets one value of a span. The field "name" also sets "ts" to the present time, in microseconds since the epoch,
    /// and "errcode" also sets "dur" to the time since "ts", in microseconds too; without a "ts" it counts from the
    /// epoch. An empty value is a value. Do not set the ids "tid", "sid" and "pid": the span is then known by another
    /// text, and under the id of another span takes that one's place, which is lost.
    /// \return false, and nothing changed, for a null key or value; false for a type that is no YarrowDataType, and
    ///         then the span is lost: no operation finds it any more, and its memory is not given back
    virtual bool FlushContext(const char* context, YarrowDataType type, const char* key, const char* value) = 0;
    /// Sends the span as an event "YarrowClient" of the data plugin: 17 fields, empty where nothing was set. The span
    /// stays, and may be sent again.
    virtual bool ReportContext(const char* context) = 0;
    /// Deletes the span. Its text is not valid any more.
    virtual bool DestroyContext(const char* context) = 0;
};

/// The public type of the spans of games and plugins, whose own kind of a span is the private type.
constexpr const char* kYarrowGameType = "0";

/// Finds a service of the library through the plugin's cached manager.
/// \return null at any null on the way
inline IPluginService* sg_get_service_by_name(PluginBase* plugin, const char* pluginName, const char* serviceName) {
    IPluginManager* manager = plugin ? plugin->GetPluginManager() : nullptr;
    IPlugin* owner = manager ? manager->GetPluginByName(pluginName) : nullptr;
    return owner ? owner->GetServiceByName(serviceName) : nullptr;
}

/// The trace service, if tracing is on.
/// \return null without the service as well
inline ITraceService* sg_get_enabled_trace_service(PluginBase* plugin) {
    ITraceService* service = static_cast<ITraceService*>(sg_get_service_by_name(plugin, kCoreModule, "YARROW"));
    return service && service->IsEnabled() ? service : nullptr;
}

/// The trace service, if tracing is on and spans of that public type are wanted. Each step of a span below asks it
/// again, so that a caller may leave the steps in place whether or not there is tracing.
inline ITraceService* sg_get_ready_trace_service(PluginBase* plugin, const char* publicType) {
    ITraceService* service = sg_get_enabled_trace_service(plugin);
    return service && service->IsReady(publicType) ? service : nullptr;
}

/// \return ITraceService::GetTraceId; null without tracing
inline const char* sg_get_traceid(PluginBase* plugin) {
    ITraceService* service = sg_get_enabled_trace_service(plugin);
    return service ? service->GetTraceId() : nullptr;
}

/// \return ITraceService::CreateContext, valid until sg_span_finish; null without tracing
inline const char* sg_create_context(PluginBase* plugin, const char* parentContext, const char* privateType,
                                     const char* publicType = kYarrowGameType) {
    ITraceService* service = sg_get_ready_trace_service(plugin, publicType);
    return service ? service->CreateContext(parentContext, publicType, privateType) : nullptr;
}

/// Starts the span's clock and sets "name", "locname" and "rmtname": what it is, where it runs, whom it asks. A null
/// leaves its own field, and without a name the clock, as it was.
inline void sg_span_start(PluginBase* plugin, const char* context, const char* name, const char* locName,
                          const char* rmtName, const char* publicType = kYarrowGameType) {
    ITraceService* service = sg_get_ready_trace_service(plugin, publicType);
    if (!service || !context) return;
    service->FlushContext(context, kYarrowReportField, "name", name);
    service->FlushContext(context, kYarrowReportField, "locname", locName);
    service->FlushContext(context, kYarrowReportField, "rmtname", rmtName);
}

/// Sets a tag. A null key or value sets nothing.
inline void sg_span_flush(PluginBase* plugin, const char* context, const char* key, const char* value,
                          const char* publicType = kYarrowGameType) {
    ITraceService* service = sg_get_ready_trace_service(plugin, publicType);
    if (service && context) service->FlushContext(context, kYarrowUserTag, key, value);
}

/// Stops the clock, sets "errcode" and "errmsg", sends the span and deletes it. A second call finds nothing, if it is
/// given a copy of the text: CreateContext's own went with the span.
inline void sg_span_finish(PluginBase* plugin, const char* context, const char* errCode, const char* errMsg,
                           const char* publicType = kYarrowGameType) {
    ITraceService* service = sg_get_ready_trace_service(plugin, publicType);
    if (!service || !context) return;
    service->FlushContext(context, kYarrowReportField, "errcode", errCode);
    service->FlushContext(context, kYarrowReportField, "errmsg", errMsg);
    service->ReportContext(context);
    service->DestroyContext(context);
}

}  // namespace Plugin
}  // namespace Orvane

#endif
