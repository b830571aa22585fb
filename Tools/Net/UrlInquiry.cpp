// One GET with the times of its steps, for a diagnosis.
#include <atomic>
#include <cstdio>

#include "Net/Inquiry.h"
#include "Net/Loop.h"
#include "Orvane/WWW.h"

namespace OrvaneNet {
namespace {

class UrlInquiry final : public Inquiry {
public:
    explicit UrlInquiry(const std::string& url) : _url(url) {}

    void Start() override {
        const auto done = [](const OrvaneUrlMeasurement* measurement, void* context) {
            auto* inquiry = static_cast<UrlInquiry*>(context);
            inquiry->_measured = *measurement;
            inquiry->_isDone.store(true, std::memory_order_release);
            WakeLoop();
        };
        if (gs_OrvaneMeasureUrl(_url.c_str(), done, this)) return;
        _isRefused = true;
        _isDone.store(true, std::memory_order_release);
    }

    bool IsDone() const override { return _isDone.load(std::memory_order_acquire); }

    Json::Value Json() const override {
        Json::Value out;
        out["url"] = _url;
        if (_isRefused) {
            out["error"] = "not a URL";
            return out;
        }
        out["error"] = _measured.error;
        out["status"] = _measured.status;
        out["bytes"] = Json::Int64(_measured.bytes);
        for (const Step& step : kSteps)
            if (const long long at = _measured.*step.at; at >= 0) out[step.key] = static_cast<double>(at) / 1000;
        return out;
    }

    std::string Text() const override {
        if (_isRefused) return PrintableText(_url) + ": not a URL";
        std::string text = PrintableText(_url) + ": ";
        text += _measured.error == 0
                    ? "status " + std::to_string(_measured.status) + ", " + std::to_string(_measured.bytes) + " bytes"
                    : "no answer, error " + std::to_string(_measured.error);
        for (const Step& step : kSteps) {
            const long long at = _measured.*step.at;
            if (at < 0) continue;
            char line[64];
            snprintf(line, sizeof line, "\n%-14s %10.3f ms", step.name, static_cast<double>(at) / 1000);
            text += line;
        }
        return text;
    }

    ExitStatus Status() const override {
        if (_isRefused) return kWrongUse;
        return _measured.error == 0 && _measured.status < 400 ? kDone : kNoAnswer;
    }

private:
    struct Step {
        const char *name, *key;
        long long OrvaneUrlMeasurement::*at;  // since the start, in microseconds; -1 where it did not get so far
    };
    static constexpr Step kSteps[] = {
        {"name", "name_ms", &OrvaneUrlMeasurement::nameLookup},
        {"connected", "connect_ms", &OrvaneUrlMeasurement::connect},
        {"TLS", "tls_ms", &OrvaneUrlMeasurement::tls},
        {"first byte", "first_byte_ms", &OrvaneUrlMeasurement::firstByte},
        {"total", "total_ms", &OrvaneUrlMeasurement::total},
    };

    const std::string _url;
    bool _isRefused = false;
    OrvaneUrlMeasurement _measured = {};
    std::atomic<bool> _isDone{false};
};

}  // namespace

std::unique_ptr<Inquiry> AskUrl(const std::string& url) {
    return std::make_unique<UrlInquiry>(url);
}

}  // namespace OrvaneNet
