// What the diagnostics give to their callbacks. Orvane/INetworkChecker.h tells the bytes in which they cross to code of
// other libraries.
#ifndef ORVANE_SYSTEM_NETWORK_CHECKER_NETWORK_RESULTS_H
#define ORVANE_SYSTEM_NETWORK_CHECKER_NETWORK_RESULTS_H

#include "Base/Container/AArray.h"
#include "Base/Container/AString.h"
#include "Serializer/Arbor/ArborBufferBase.h"

namespace Quern {

// The fields are filled by position from a text that has one field more than the record: everything behind the request
// id is one place late.
class PingResult : public _tagArborBufferBase {
public:
    PingResult* Clone() const override { return new PingResult(*this); }
    void WriteTo(CArborBufferWriter& writer) const override;
    void ReadFrom(CArborBufferReader& reader) override;

    int requestId = 0;
    AString host;     // empty
    int number1 = 0;  // 0: the text's host and address, which is no number
    int number2 = 0;  // packets asked for; 0 after a failure, as all that follow
    int number3 = 0;  // replies
    int number4 = 0;  // the times of all replies together, in milliseconds; with none, the whole time-out
    int number5 = 0;  // the shortest
    int number6 = 0;  // the mean
    int number7 = 0;  // the longest; after a failure likewise 0
};

class TraceRouteMessage : public _tagArborBufferBase {
public:
    TraceRouteMessage* Clone() const override { return new TraceRouteMessage(*this); }
    void WriteTo(CArborBufferWriter& writer) const override;
    void ReadFrom(CArborBufferReader& reader) override;

    AString address;  // "TimeOut" if no probe was answered
    AString value;    // mean milliseconds; "-1" to "-3": so many of three probes were lost
};

class TraceRouteResult : public _tagArborBufferBase {
public:
    TraceRouteResult* Clone() const override { return new TraceRouteResult(*this); }
    void WriteTo(CArborBufferWriter& writer) const override;
    void ReadFrom(CArborBufferReader& reader) override;

    int requestId = 0;
    AString host;
    int hopCount = 0;
    AArray hops;     // of TraceRouteMessage
    int status = 0;  // 0, whether or not the target was reached
};

class NSLookupResult : public _tagArborBufferBase {
public:
    NSLookupResult* Clone() const override { return new NSLookupResult(*this); }
    void WriteTo(CArborBufferWriter& writer) const override;
    void ReadFrom(CArborBufferReader& reader) override;

    int requestId = 0;
    AString host;
    int status = 0;    // 0; on the wire behind the addresses
    AArray addresses;  // of AString; the last is "0", or "1" if there is none
};

}  // namespace Quern

#endif
