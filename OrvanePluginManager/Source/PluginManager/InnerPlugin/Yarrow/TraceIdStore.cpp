#include "PluginManager/InnerPlugin/Yarrow/TraceIdStore.h"

#include "Serializer/Arbor/ArborBufferReader.h"
#include "Serializer/Arbor/ArborBufferWriter.h"

namespace Orvane::Plugin {

_tagTraceIdStore* _tagTraceIdStore::Clone() const {
    return new _tagTraceIdStore(*this);
}

void _tagTraceIdStore::WriteTo(Quern::CArborBufferWriter& writer) const {
    writer.Write(traceIds);
}

void _tagTraceIdStore::ReadFrom(Quern::CArborBufferReader& reader) {
    reader.Read<Quern::AString>(traceIds);
}

}  // namespace Orvane::Plugin
