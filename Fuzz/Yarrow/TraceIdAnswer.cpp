// The answer of the trace id server: nothing throws, and ids come whole or not at all.
#include "PluginManager/InnerPlugin/Yarrow/TraceIdAnswer.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using Orvane::Plugin::TraceIdAnswer;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const TraceIdAnswer answer =
        Orvane::Plugin::ReadTraceIdAnswer(reinterpret_cast<const char*>(data), static_cast<int>(size));
    if (answer.fault != TraceIdAnswer::Fault::kNone) return 0;
    const auto count = static_cast<size_t>(answer.count);
    if (answer.retcode != 0 || answer.count < 1 || answer.traceIds.size() != count || answer.size != answer.count)
        abort();
    return 0;
}
