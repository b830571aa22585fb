// The stock of trace ids: the input is the file. What is read of it is no more than it holds, and comes back from its
// own bytes.
#include "PluginManager/InnerPlugin/Yarrow/TraceIdStore.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using Orvane::Plugin::_tagTraceIdStore;
using Quern::AString;

namespace {

void Require(bool condition) {
    if (!condition) abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    _tagTraceIdStore store;
    store.Decode(reinterpret_cast<const char*>(data), static_cast<int>(size));
    AString bytes, again;
    Require(store.Encode(bytes));
    // Two that are cut short, the count and the last length, take four bytes each where there were fewer.
    Require(static_cast<size_t>(bytes.length()) <= size + 8);

    store.traceIds.RemoveFirstObject();
    Require(store.Encode(bytes));
    _tagTraceIdStore back;
    back.Decode(bytes.data(), bytes.length());
    Require(back.Encode(again) && again.IsEqual(&bytes) && back.traceIds.Count() == store.traceIds.Count());
    for (int i = 0; i < store.traceIds.Count(); ++i)
        Require(back.traceIds.AStringAtIndex(i)->length() == store.traceIds.AStringAtIndex(i)->length());
    return 0;
}
