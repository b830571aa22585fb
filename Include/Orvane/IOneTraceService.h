/// \file IOneTraceService.h
/// Tracing in five calls. Slot order is a binary contract.
///
/// Games use the functions orvanecore_onetrace_* (OrvaneCore.h), plugins the functions sg_* (ITraceService.h); both do
/// the same.
#ifndef ORVANE_I_ONE_TRACE_SERVICE_H
#define ORVANE_I_ONE_TRACE_SERVICE_H

namespace Orvane {

/// Without state: each call finds the trace service anew and asks it whether spans are wanted. Where they are not, it
/// does nothing, so that a game leaves its calls in place whether or not there is tracing. Any thread.
class IOneTraceService {
public:
    virtual ~IOneTraceService() {}
    /// \return the trace id of this run of the process, valid for its life; null without tracing
    virtual const char* GetTraceId() = 0;
    /// Makes a span.
    /// \param parentContext the text of the span above it; null for a root
    /// \param privateType the game's own kind of a span; null is "0"
    /// \return the span's text, valid until SpanFinish; null without tracing
    virtual const char* CreateContext(const char* parentContext, const char* privateType) = 0;
    /// Starts the span's clock and names it, where it runs and whom it asks. A null leaves its field as it was.
    virtual void SpanStart(const char* context, const char* name, const char* locName, const char* rmtName) = 0;
    /// Sets a tag. A null does nothing.
    virtual void SpanFlush(const char* context, const char* key, const char* value) = 0;
    /// Stops the clock, reports the span and ends it. A second call for one span does nothing.
    virtual void SpanFinish(const char* context, const char* errCode, const char* errMsg) = 0;

    /// The one object, made at the first call. Not exported, as the next: for the library itself.
    static IOneTraceService* GetInstance();
    static void ReleaseInstance();
};

}  // namespace Orvane

#endif
