#include "System/NetworkChecker/NetworkResults.h"

#include "Serializer/Arbor/ArborBufferReader.h"
#include "Serializer/Arbor/ArborBufferWriter.h"

namespace Quern {

// The bytes hold no names: the order in each pair of functions is the format, which Orvane/INetworkChecker.h tells to
// code of other libraries.
void PingResult::WriteTo(CArborBufferWriter& writer) const {
    writer.Write(requestId);
    writer.Write(host);
    for (int number : {number1, number2, number3, number4, number5, number6, number7})
        writer.Write(number);
}

void PingResult::ReadFrom(CArborBufferReader& reader) {
    reader.Read(requestId);
    reader.Read(host);
    for (int* number : {&number1, &number2, &number3, &number4, &number5, &number6, &number7})
        reader.Read(*number);
}

void TraceRouteMessage::WriteTo(CArborBufferWriter& writer) const {
    writer.Write(address);
    writer.Write(value);
}

void TraceRouteMessage::ReadFrom(CArborBufferReader& reader) {
    reader.Read(address);
    reader.Read(value);
}

void TraceRouteResult::WriteTo(CArborBufferWriter& writer) const {
    writer.Write(requestId);
    writer.Write(host);
    writer.Write(hopCount);
    writer.Write(hops);
    writer.Write(status);
}

void TraceRouteResult::ReadFrom(CArborBufferReader& reader) {
    reader.Read(requestId);
    reader.Read(host);
    reader.Read(hopCount);
    reader.Read<TraceRouteMessage>(hops);
    reader.Read(status);
}

void NSLookupResult::WriteTo(CArborBufferWriter& writer) const {
    writer.Write(requestId);
    writer.Write(host);
    writer.Write(addresses);
    writer.Write(status);
}

void NSLookupResult::ReadFrom(CArborBufferReader& reader) {
    reader.Read(requestId);
    reader.Read(host);
    reader.Read<AString>(addresses);
    reader.Read(status);
}

}  // namespace Quern
