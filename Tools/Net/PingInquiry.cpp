// ping: packets sent at once, replies counted.
#include "Net/CheckerReply.h"
#include "Net/Inquiry.h"

namespace OrvaneNet {
namespace {

class PingInquiry final : public Inquiry {
public:
    PingInquiry(const Arguments& arguments, const std::string& host)
        : _host(host), _count(arguments.count), _timeOut(arguments.timeOut) {}

    void Start() override {
        _refused = WhyNoIcmp("ping");
        if (!_refused.empty()) {
            _isDone = true;
            return;
        }
        const int id = Expect<Quern::PingReport>([this](const Quern::PingReport& report) {
            _report = report;
            _isDone = true;
        });
        gs_OrvaneNetworkChecker()->Ping(_host.c_str(), id, OnPing, static_cast<unsigned char>(_timeOut),
                                        static_cast<unsigned char>(_count));
    }

    bool IsDone() const override { return _isDone; }

    Json::Value Json() const override {
        Json::Value out;
        out["host"] = _host;
        if (!_refused.empty()) {
            out["error"] = _refused;
            return out;
        }
        out["sent"] = _report.packets;
        out["received"] = _report.replies;
        if (_report.replies > 0) {
            out["min_ms"] = _report.least;
            out["average_ms"] = _report.mean;
            out["max_ms"] = _report.most;
        }
        return out;
    }

    std::string Text() const override {
        if (!_refused.empty()) return _refused;
        if (_report.packets == 0) return _host + ": unknown, or the system refuses to send";
        const int lost = (_report.packets - _report.replies) * 100 / _report.packets;
        std::string text = _host + ": " + std::to_string(_report.packets) + " sent, " +
                           std::to_string(_report.replies) + " received, " + std::to_string(lost) + " % lost";
        if (_report.replies > 0)
            text += "; shortest " + std::to_string(_report.least) + " ms, average " + std::to_string(_report.mean) +
                    " ms, longest " + std::to_string(_report.most) + " ms";
        return text;
    }

    ExitStatus Status() const override {
        if (!_refused.empty()) return kWrongUse;
        return _report.replies > 0 ? kDone : kNoAnswer;
    }

private:
    const std::string _host;
    const int _count, _timeOut;
    std::string _refused;
    bool _isDone = false;
    Quern::PingReport _report;
};

}  // namespace

std::unique_ptr<Inquiry> AskPing(const Arguments& arguments, const std::string& host) {
    return std::make_unique<PingInquiry>(arguments, host);
}

}  // namespace OrvaneNet
