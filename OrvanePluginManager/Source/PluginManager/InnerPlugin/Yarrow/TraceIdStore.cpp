#include "PluginManager/InnerPlugin/Yarrow/TraceIdStore.h"

#include "Serializer/Arbor/ArborBufferReader.h"
#include "Serializer/Arbor/ArborBufferWriter.h"

namespace Orvane::Plugin {

_tagTraceIdStore* _tagTraceIdStore::Clone() const {
    return new _tagTraceIdStore(*this);
}

void _tagTraceIdStore::WriteTo(Quern::CArborBufferWriter& writer) const {
    // The array alone, whose encoding begins with its count: a header would make earlier versions' files unreadable.
    writer.Write(traceIds);
}

void _tagTraceIdStore::ReadFrom(Quern::CArborBufferReader& reader) {
    reader.Read<Quern::AString>(traceIds);
}

}  // namespace Orvane::Plugin
