// state: how this machine is connected, and --watch, each change of it.
#include <sys/time.h>

#include <csignal>
#include <ctime>

#include "Net/Commands.h"
#include "Net/Inquiry.h"
#include "Net/Loop.h"
#include "Orvane/INetwork.h"

namespace OrvaneNet {
namespace {

const char* WordOf(int state) {
    switch (state) {
        case Quern::kANetworkNotReachable:
            return "no connection";
        case Quern::kANetworkReachableViaWWAN:
            return "cellular";
        case Quern::kANetworkReachableViaWiFi:
            return "Wi-Fi or cable";
        case Quern::kANetworkWWAN2G:
            return "cellular, 2G";
        case Quern::kANetworkWWAN3G:
            return "cellular, 3G";
        case Quern::kANetworkWWAN4G:
            return "cellular, 4G";
        case Quern::kANetworkWWAN5G:
            return "cellular, 5G";
        default:
            return "cellular, of unknown generation";
    }
}

class StateInquiry final : public Inquiry {
public:
    void Start() override {
        _state = gs_OrvaneNetwork()->GetNetworkState();
        gs_OrvaneDetailNetworkInfo(_detail);
    }
    bool IsDone() const override { return true; }

    Json::Value Json() const override {
        Json::Value out;
        out["state"] = static_cast<int>(_state);
        out["words"] = WordOf(_detail.state);
        out["detail"] = _detail.state;
        out["carrier"] = _detail.carrier;
        out["carrier_code"] = _detail.carrierCode;
        out["ssid"] = PrintableText(_detail.ssid);
        out["bssid"] = _detail.bssid;
        return out;
    }

    std::string Text() const override {
        std::string text = WordOf(_detail.state);
        if (!_detail.ssid.empty()) text += ", network \"" + PrintableText(_detail.ssid) + "\" (" + _detail.bssid + ")";
        if (!_detail.carrierCode.empty()) text += ", carrier " + PrintableText(_detail.carrierCode);
        return text;
    }

    ExitStatus Status() const override { return _state == Quern::kANetworkNotReachable ? kNoAnswer : kDone; }

private:
    Quern::ANetworkState _state = Quern::kANetworkNotReachable;
    Quern::DetailNetworkInfo _detail;
};

volatile sig_atomic_t g_isStopped = 0;

void OnStop(int) {
    g_isStopped = 1;
    WakeLoop();
}

std::string Now() {
    timeval now;
    gettimeofday(&now, nullptr);
    tm local;
    localtime_r(&now.tv_sec, &local);
    char text[64], whole[80];
    strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
    snprintf(whole, sizeof whole, "%s.%03d", text, static_cast<int>(now.tv_usec / 1000));
    return whole;
}

// Prints each change as it is told.
class Watcher final : public Quern::CNetworkObserver {
public:
    explicit Watcher(bool json) : _json(json) {}

    void OnNetworkStateChanged(Quern::ANetworkState state) override {
        if (!_json) {
            Print(Now() + "  " + WordOf(state));
            return;
        }
        Json::Value event;
        event["time"] = Now();
        event["state"] = static_cast<int>(state);
        event["words"] = WordOf(state);
        PrintJson(event, true);
    }

private:
    const bool _json;
};

}  // namespace

std::unique_ptr<Inquiry> AskState() {
    return std::make_unique<StateInquiry>();
}

int RunWatch(const Arguments& arguments) {
    Watcher watcher(arguments.json);
    watcher.OnNetworkStateChanged(gs_OrvaneNetwork()->GetNetworkState());
    gs_OrvaneNetwork()->AddObserver(&watcher);
    signal(SIGINT, OnStop);
    signal(SIGTERM, OnStop);
    RunUntil([] { return g_isStopped != 0; }, arguments.deadline > 0 ? InSeconds(arguments.deadline) : Deadline());
    return kDone;
}

}  // namespace OrvaneNet
