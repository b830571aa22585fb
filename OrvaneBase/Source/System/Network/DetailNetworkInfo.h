// The detail record of the network. Orvane/INetwork.h tells its bytes to those outside.
#ifndef ORVANE_SYSTEM_NETWORK_DETAIL_NETWORK_INFO_H
#define ORVANE_SYSTEM_NETWORK_DETAIL_NETWORK_INFO_H

#include "Orvane/NetworkState.h"
#include "Serializer/Arbor/ArborBufferBase.h"

namespace Quern {

// The fields in the order of their bytes.
struct _tagADetailNetworkInfo : _tagArborBufferBase {
    _tagADetailNetworkInfo* Clone() const override { return new _tagADetailNetworkInfo(*this); }
    void WriteTo(CArborBufferWriter& writer) const override;
    void ReadFrom(CArborBufferReader& reader) override;

    int state = kANetworkNotReachable;  // an ANetworkState: 0, 2 or 4 to 8
    int carrier = 0;                    // AReachability::getCarrier
    AString carrierCode;
    AString ssid;
    AString bssid;
    AString currentAPN;
};

// Asks the platform anew. Any thread.
_tagADetailNetworkInfo ReadDetailNetworkInfo();

}  // namespace Quern

#endif
