#include "NetworkReport.h"

#include <atomic>
#include <list>
#include <sstream>

#include "Orvane/INetwork.h"

namespace OrvaneHost {
namespace {

// Lives to the end of the process; the library may be gone by then.
class NetworkObserver final : public Quern::CNetworkObserver {
public:
    void OnNetworkStateChanged(Quern::ANetworkState state) override {
        orvane_console_log("orvane-host: network changed to %d", static_cast<int>(state));
    }
};

struct Modem {
    std::string radio, country, network;
};
std::atomic<const Modem*> g_modem{nullptr};  // the last one played; others stay, since other threads may read them

template <std::string Modem::*Field>
void* Answer(orvane_object*, const char*, void* const*) {
    return const_cast<char*>((g_modem.load(std::memory_order_acquire)->*Field).c_str());
}

// The provider, and the radios by service, whatever the service.
void* AnswerPart(orvane_object*, const char*, void* const*) {
    static orvane_object part = {nullptr, nullptr};
    part.isa = orvane_class_lookup("HostModemPart");
    return &part;
}

void* AnswerService(orvane_object*, const char*, void* const*) {
    return const_cast<char*>("data");
}

bool RegisterModem() {
    orvane_class* const part = orvane_class_allocate("HostModemPart");
    orvane_class_add_method(part, "objectForKey:", Answer<&Modem::radio>);
    orvane_class_add_method(part, "mobileCountryCode", Answer<&Modem::country>);
    orvane_class_add_method(part, "mobileNetworkCode", Answer<&Modem::network>);
    orvane_class* const modem = orvane_class_allocate("CTTelephonyNetworkInfo");
    orvane_class_add_method(modem, "currentRadioAccessTechnology", Answer<&Modem::radio>);
    orvane_class_add_method(modem, "serviceCurrentRadioAccessTechnology", AnswerPart);
    orvane_class_add_method(modem, "dataServiceIdentifier", AnswerService);
    orvane_class_add_method(modem, "subscriberCellularProvider", AnswerPart);
    return orvane_class_register(part) && orvane_class_register(modem);
}

}  // namespace

void TellNetwork() {
    Quern::DetailNetworkInfo info;
    if (!gs_OrvaneDetailNetworkInfo(info)) {
        orvane_console_log("orvane-host: no network in this process");
        return;
    }
    static auto* const observer = new NetworkObserver;
    gs_OrvaneNetwork()->AddObserver(observer);
    orvane_console_log("orvane-host: network %d, detail %d, carrier %d '%s', wifi '%s' at '%s'",
                       static_cast<int>(gs_OrvaneNetwork()->GetNetworkState()), static_cast<int>(info.state),
                       static_cast<int>(info.carrier), info.carrierCode.c_str(), info.ssid.c_str(), info.bssid.c_str());
}

bool PlayModem(const std::string& words) {
    std::istringstream in(words);
    Modem modem;
    std::string more;
    if (!(in >> modem.radio >> modem.country >> modem.network) || in >> more) return false;
    modem.radio = "CTRadioAccessTechnology" + modem.radio;
    static auto* const kept = new std::list<Modem>;  // never destroyed: threads outlive static destruction
    kept->push_back(modem);
    g_modem.store(&kept->back(), std::memory_order_release);
    static const bool isRegistered = RegisterModem();
    if (!isRegistered) orvane_console_log("orvane-host: another modem is in this process already");
    return true;
}

}  // namespace OrvaneHost
