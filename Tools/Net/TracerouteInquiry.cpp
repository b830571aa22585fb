// traceroute: the hops towards a host.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "Net/CheckerReply.h"
#include "Net/Inquiry.h"

namespace OrvaneNet {
namespace {

constexpr char kSilent[] = "TimeOut";  // the address of a hop that never answered

struct Hop {
    std::string address;
    int value;  // the mean time in milliseconds; -1 to -3: as many of three probes were lost
};

std::string DescribeValue(const Hop& hop) {
    if (hop.address == kSilent) return "no answer";
    if (hop.value < 0) return std::to_string(-hop.value) + " of 3 probes lost";
    return std::to_string(hop.value) + " ms";
}

class TracerouteInquiry final : public Inquiry {
public:
    TracerouteInquiry(const Arguments& arguments, const std::string& host) : _host(host), _maxTtl(arguments.maxTtl) {}

    void Start() override {
        _refused = WhyNoIcmp("traceroute");
        if (!_refused.empty()) {
            _isDone = true;
            return;
        }
        const int id = Expect<Quern::TraceRouteReport>([this](const Quern::TraceRouteReport& report) { Take(report); });
        gs_OrvaneNetworkChecker()->TraceRoute(_host.c_str(), id, OnTraceRoute, static_cast<unsigned char>(_maxTtl));
    }

    bool IsDone() const override { return _isDone; }

    Json::Value Json() const override {
        Json::Value out;
        out["host"] = _host;
        if (!_refused.empty()) {
            out["error"] = _refused;
            return out;
        }
        out["hops"] = Json::Value(Json::arrayValue);
        for (const Hop& hop : _hops) {
            Json::Value entry(Json::objectValue);
            const bool isSilent = hop.address == kSilent;
            entry["address"] = isSilent ? Json::Value() : Json::Value(hop.address);
            if (hop.value >= 0)
                entry["ms"] = hop.value;
            else
                entry["lost"] = -hop.value;
            out["hops"].append(entry);
        }
        return out;
    }

    std::string Text() const override {
        if (!_refused.empty()) return _refused;
        std::string text;
        for (size_t i = 0; i < _hops.size(); ++i) {
            char line[160];
            snprintf(line, sizeof line, "%3zu  %-40s %s\n", i + 1,
                     _hops[i].address == kSilent ? "*" : PrintableText(_hops[i].address).c_str(),
                     DescribeValue(_hops[i]).c_str());
            text += line;
        }
        if (!IsAnswered()) text += _host + ": unknown, or no hop answers";
        return text;
    }

    ExitStatus Status() const override {
        if (!_refused.empty()) return kWrongUse;
        return IsAnswered() ? kDone : kNoAnswer;
    }

private:
    bool IsAnswered() const {
        return std::any_of(_hops.begin(), _hops.end(), [](const Hop& hop) { return hop.address != kSilent; });
    }

    void Take(const Quern::TraceRouteReport& report) {
        for (const Quern::TraceRouteHop& hop : report.hops)
            _hops.push_back({hop.address, atoi(hop.value.c_str())});
        _isDone = true;
    }

    const std::string _host;
    const int _maxTtl;
    std::string _refused;
    bool _isDone = false;
    std::vector<Hop> _hops;
};

}  // namespace

std::unique_ptr<Inquiry> AskTraceroute(const Arguments& arguments, const std::string& host) {
    return std::make_unique<TracerouteInquiry>(arguments, host);
}

}  // namespace OrvaneNet
