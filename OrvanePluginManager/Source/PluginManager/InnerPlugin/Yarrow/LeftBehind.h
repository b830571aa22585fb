// Spans that the trace service lets go of without an end. They stay in memory on purpose: whoever made one may still
// hold its text, which is the object's.
#ifndef ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_YARROW_LEFT_BEHIND_H
#define ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_YARROW_LEFT_BEHIND_H

#include "Orvane/ISpanContext.h"

namespace Orvane::Plugin {

// One function for each way of being lost, which the leak sanitizer knows by its name. Not inlined, for that.

// A value of an unknown kind was to be set.
__attribute__((noinline)) void LeavePoppedSpanBehind(ISpanContext* context);
// Another span had the same id.
__attribute__((noinline)) void LeaveReplacedSpanBehind(ISpanContext* context);
// The service went before the span.
__attribute__((noinline)) void LeaveLiveSpanBehind(ISpanContext* context);

}  // namespace Orvane::Plugin

#endif
