// The stock of trace ids as it lies in its file:
//
//   count of ids, then of each its length and its bytes, without a terminator
//
// The numbers are signed, of 4 bytes, big-endian; there is nothing else in the file. The first id is the next to go.
#ifndef ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_YARROW_TRACE_ID_STORE_H
#define ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_YARROW_TRACE_ID_STORE_H

#include "Base/Container/AArray.h"
#include "Serializer/Arbor/ArborBufferBase.h"

namespace Orvane::Plugin {

// However large: a stock beyond this, a hundred thousand ids, is neither read nor made, and no answer is longer.
constexpr int kLargestTraceIdStore = 4 << 20;

// Any bytes can be read. A count is cut to the bytes behind it. A length below 1, or beyond the file's end, gives an
// empty id, and the reading goes on behind the length.
struct _tagTraceIdStore : Quern::_tagArborBufferBase {
    _tagTraceIdStore* Clone() const override;
    void WriteTo(Quern::CArborBufferWriter& writer) const override;
    void ReadFrom(Quern::CArborBufferReader& reader) override;

    Quern::AArray traceIds;  // AStrings, in order of use; the server's are opaque
};

}  // namespace Orvane::Plugin

#endif
