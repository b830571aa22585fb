#include "System/Network/Telephony.h"

#include "Orvane/RunTime.h"
#include "Orvane/TelephonyNetworkInfo.h"
#include "System/Network/SystemVersion.h"

namespace Quern {
namespace {

// An instance of the class while the object lives; null in a process without it.
class TelephonyNetworkInfo {
public:
    TelephonyNetworkInfo() : _info(orvane_object_create(orvane_class_lookup("CTTelephonyNetworkInfo"))) {}
    ~TelephonyNetworkInfo() { orvane_object_release(_info); }
    TelephonyNetworkInfo(const TelephonyNetworkInfo&) = delete;
    TelephonyNetworkInfo& operator=(const TelephonyNetworkInfo&) = delete;

    bool Responds(const char* selector) const { return orvane_object_responds(_info, selector); }
    const char* Text(const char* selector) const { return Text(_info, selector); }
    orvane_object* Object(const char* selector) const {
        return static_cast<orvane_object*>(orvane_object_perform(_info, selector, nullptr));
    }

    static const char* Text(orvane_object* object, const char* selector, void* const* arguments = nullptr) {
        return static_cast<const char*>(orvane_object_perform(object, selector, arguments));
    }

private:
    orvane_object* const _info;
};

std::optional<std::string> Copy(const char* text) {
    return text ? std::optional<std::string>(text) : std::nullopt;
}

// The radio of the service that carries data, of several that may stand side by side.
std::optional<std::string> RadioOfDataService(const TelephonyNetworkInfo& info) {
    orvane_object* const radios = info.Object("serviceCurrentRadioAccessTechnology");
    const char* const service = info.Text("dataServiceIdentifier");
    if (!radios || !service) return std::nullopt;
    void* const arguments[] = {const_cast<char*>(service)};
    return Copy(TelephonyNetworkInfo::Text(radios, "objectForKey:", arguments));
}

}  // namespace

ANetworkState GenerationOfRadio(const std::optional<std::string>& radioName) {
    static constexpr struct {
        const char* name;
        ANetworkState state;
    } kRadios[] = {
        {ORVANE_RADIO_EDGE, kANetworkWWAN2G},
        {ORVANE_RADIO_GPRS, kANetworkWWAN2G},
        {ORVANE_RADIO_WCDMA, kANetworkWWAN3G},
        {ORVANE_RADIO_CDMA1X, kANetworkWWAN3G},
        {ORVANE_RADIO_CDMA_EVDO_REV_0, kANetworkWWAN3G},
        {ORVANE_RADIO_CDMA_EVDO_REV_A, kANetworkWWAN3G},
        {ORVANE_RADIO_CDMA_EVDO_REV_B, kANetworkWWAN3G},
        {ORVANE_RADIO_HSDPA, kANetworkWWAN3G},
        {ORVANE_RADIO_HSUPA, kANetworkWWAN3G},
        {ORVANE_RADIO_LTE, kANetworkWWAN4G},
        {ORVANE_RADIO_EHRPD, kANetworkWWAN4G},
        {ORVANE_RADIO_NR, kANetworkWWAN5G},
        {ORVANE_RADIO_NRNSA, kANetworkWWAN5G},
    };
    for (const auto& radio : kRadios)
        if (radioName == radio.name) return radio.state;
    return kANetworkWWANUnknown;
}

ANetworkState CellularGeneration() {
    const float version = SystemVersion();
    const TelephonyNetworkInfo info;
    if (version >= 13.0f) return GenerationOfRadio(RadioOfDataService(info));
    if (version >= 7.0f && info.Responds("currentRadioAccessTechnology"))
        return GenerationOfRadio(Copy(info.Text("currentRadioAccessTechnology")));
    return kANetworkWWANUnknown;
}

std::optional<std::string> CarrierCode() {
    const TelephonyNetworkInfo info;
    orvane_object* const provider = info.Object("subscriberCellularProvider");
    const std::optional<std::string> country = Copy(TelephonyNetworkInfo::Text(provider, "mobileCountryCode"));
    const std::optional<std::string> network = Copy(TelephonyNetworkInfo::Text(provider, "mobileNetworkCode"));
    if (!country || !network) return std::nullopt;
    return *country + *network;
}

}  // namespace Quern
