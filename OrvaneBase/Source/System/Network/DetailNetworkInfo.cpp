#include "System/Network/DetailNetworkInfo.h"

#include "Serializer/Arbor/ArborBufferReader.h"
#include "Serializer/Arbor/ArborBufferWriter.h"
#include "System/Network/AReachability.h"

namespace Quern {
namespace {

AString Text(const std::string& text) {
    return AString(text.data(), static_cast<int>(text.size()));
}

}  // namespace

// The bytes hold no names: this order is the format, which Orvane/INetwork.h tells to code of other libraries.
void _tagADetailNetworkInfo::WriteTo(CArborBufferWriter& writer) const {
    writer.Write(state);
    writer.Write(carrier);
    writer.Write(carrierCode);
    writer.Write(ssid);
    writer.Write(bssid);
    writer.Write(currentAPN);
}

void _tagADetailNetworkInfo::ReadFrom(CArborBufferReader& reader) {
    reader.Read(state);
    reader.Read(carrier);
    reader.Read(carrierCode);
    reader.Read(ssid);
    reader.Read(bssid);
    reader.Read(currentAPN);
}

_tagADetailNetworkInfo ReadDetailNetworkInfo() {
    _tagADetailNetworkInfo info;
    const AReachability* const reachability = GetAReachablity();
    if (reachability) info.state = reachability->currentDetailReachabilityStatus();
    if (info.state >= kANetworkWWANUnknown) {
        const std::optional<std::string> code = AReachability::getCarrierCode();
        info.carrierCode = Text(code.value_or(""));
        info.carrier = AReachability::getCarrier(code);
        info.currentAPN = Text(AReachability::getCurrentAPN());
    } else if (info.state == kANetworkReachableViaWiFi) {
        info.ssid = Text(AReachability::getSSID());
        info.bssid = Text(AReachability::getBSSID());
    }
    return info;
}

}  // namespace Quern
