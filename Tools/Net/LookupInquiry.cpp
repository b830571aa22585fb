// lookup: the addresses of a name.
#include <vector>

#include "Net/CheckerReply.h"
#include "Net/Inquiry.h"

namespace OrvaneNet {
namespace {

constexpr char kNotIPv4[] = "0.0.0.0";  // what an IPv6 address reads as; of IPv4 it is no host's

class LookupInquiry final : public Inquiry {
public:
    explicit LookupInquiry(const std::string& host) : _host(host) {}

    void Start() override {
        const int id = Expect<Quern::NSLookupReport>([this](const Quern::NSLookupReport& report) {
            _addresses = report.addresses;
            _isDone = true;
        });
        gs_OrvaneNetworkChecker()->NSLookup(_host.c_str(), id, OnNSLookup);
    }

    bool IsDone() const override { return _isDone; }

    Json::Value Json() const override {
        Json::Value out;
        out["host"] = _host;
        out["addresses"] = Json::Value(Json::arrayValue);
        for (const std::string& address : _addresses)
            if (address != kNotIPv4) out["addresses"].append(address);
        out["addresses_not_shown"] = CountOfIPv6();
        return out;
    }

    std::string Text() const override {
        if (_addresses.empty()) return _host + ": unknown";
        std::string text;
        for (const std::string& address : _addresses)
            if (address != kNotIPv4) text += PrintableText(address) + "\n";
        if (const int count = CountOfIPv6())
            text += std::to_string(count) + (count == 1 ? " address" : " addresses") +
                    " of IPv6 (or 0.0.0.0 itself), which the library's lookup does not show";
        return text;
    }

    ExitStatus Status() const override { return _addresses.empty() ? kNoAnswer : kDone; }

private:
    int CountOfIPv6() const {
        int count = 0;
        for (const std::string& address : _addresses)
            count += address == kNotIPv4;
        return count;
    }

    const std::string _host;
    bool _isDone = false;
    std::vector<std::string> _addresses;
};

}  // namespace

std::unique_ptr<Inquiry> AskLookup(const std::string& host) {
    return std::make_unique<LookupInquiry>(host);
}

}  // namespace OrvaneNet
