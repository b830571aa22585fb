// What the events of the library are to OpenTelemetry: a span that was reported is a span, any other event a log record
// of that name. The tables are in Docs/Forwarding.md.
#ifndef ORVANE_EXAMPLES_PELL_OTLP_MAPPING_H
#define ORVANE_EXAMPLES_PELL_OTLP_MAPPING_H

#include "EventBytes.h"
#include "Otlp/Signals.h"

namespace Pell {

// The event as which the trace service reports a finished span.
constexpr char kSpanEventName[] = "YarrowClient";

// `withOpenId`: whether the logged-in user's id goes along.
OrvaneOtlp::Span SpanOf(const Event& event, bool withOpenId);
OrvaneOtlp::LogRecord LogRecordOf(const Event& event, bool withOpenId);

}  // namespace Pell

#endif
