#include "DevServer/Fault.h"

#include <algorithm>
#include <charconv>
#include <map>

#include "DevServer/HostileJson.h"
#include "DevServer/Query.h"

namespace OrvaneDevServer {
namespace {

constexpr int64_t kHundredMegabytes = 100 << 20;
constexpr int64_t kMostBytes = 1LL << 40;
constexpr int64_t kMostDelay = 24LL * 3600 * 1000;

using Kind = Fault::Kind;

// Cuts the text in front of the first colon off.
std::string TakePiece(std::string& text) {
    const size_t colon = text.find(':');
    const std::string piece = text.substr(0, colon);
    text = colon == std::string::npos ? "" : text.substr(colon + 1);
    return piece;
}

bool ReadInteger(const std::string& text, int64_t least, int64_t most, int64_t& number) {
    const char* begin = text.data() + text.starts_with('+');
    const char* end = text.data() + text.size();
    int64_t value = 0;
    const auto [stop, error] = std::from_chars(begin, end, value);
    if (error != std::errc() || stop != end || value < least || value > most) return false;
    number = value;
    return true;
}

// "3", "+1" (the next), "3-5", "3-", "*".
bool ReadWhich(std::string which, Fault& fault) {
    if (which == "*") return true;
    fault.isFromNow = which.starts_with('+');
    if (fault.isFromNow) which.erase(0, 1);
    const size_t dash = which.find('-');
    if (!ReadDecimal(which.substr(0, dash), fault.first) || fault.first == 0) return false;
    const std::string last = dash == std::string::npos ? which : which.substr(dash + 1);
    return last.empty() ? dash != std::string::npos : ReadDecimal(last, fault.last) && fault.last >= fault.first;
}

bool ReadStatus(const std::string& what, const std::string& more, Fault& fault) {
    fault.kind = Kind::kStatus;
    fault.keepsBody = more == "json";
    return ReadInteger(what, 200, 599, fault.number) && (more.empty() || fault.keepsBody);
}

bool ReadHostile(const std::string& more, Fault& fault) {
    fault.text = more;
    fault.isSeed = ReadInteger(more, 0, INT64_MAX, fault.number);
    return more.empty() || fault.isSeed || FindHostile(fault.protocol, more);
}

bool ReadRuleId(const std::string& more, Fault& fault) {
    fault.isRelative = more.starts_with('+') || more.starts_with('-');
    return fault.protocol == Protocol::kConfig && ReadInteger(more, INT32_MIN, INT32_MAX, fault.number);
}

// "9", "-1", "+9", "+-9" (9 back), "same"
bool ReadNextPos(std::string more, Fault& fault) {
    fault.isRelative = more.starts_with('+');
    if (fault.isRelative) more.erase(0, 1);
    fault.text = more == "same" ? more : "";
    return fault.protocol == Protocol::kUpload &&
           (!fault.text.empty() || ReadInteger(more, INT64_MIN / 4, INT64_MAX / 4, fault.number));
}

bool ReadBig(const std::string& more, Fault& fault) {
    fault.number = kHundredMegabytes;
    return more.empty() || ReadInteger(more, 1, kMostBytes, fault.number);
}

bool ReadWhat(const std::string& what, const std::string& more, Fault& fault) {
    static const std::map<std::string, Kind> kKinds = {
        {"delay", Kind::kDelay}, {"hold", Kind::kHold},       {"redirect", Kind::kRedirect}, {"empty", Kind::kEmpty},
        {"{}", Kind::kObject},   {"hostile", Kind::kHostile}, {"ret", Kind::kCode},          {"rule", Kind::kRuleId},
        {"big", Kind::kBig},     {"next", Kind::kNextPos},    {"url", Kind::kUploadUrl}};
    const auto known = kKinds.find(what);
    if (known == kKinds.end()) return ReadStatus(what, more, fault);
    fault.kind = known->second;
    switch (fault.kind) {
        case Kind::kDelay:
            return ReadInteger(more, 0, kMostDelay, fault.number);
        case Kind::kRedirect:
            fault.text = more;
            return more.find_first_of("\r\n") == std::string::npos;
        case Kind::kHostile:
            return ReadHostile(more, fault);
        case Kind::kCode:
            return ReadInteger(more, INT32_MIN, INT32_MAX, fault.number);
        case Kind::kRuleId:
            return ReadRuleId(more, fault);
        case Kind::kBig:
            return ReadBig(more, fault);
        case Kind::kNextPos:
            return ReadNextPos(more, fault);
        case Kind::kUploadUrl:
            fault.text = more;
            return fault.protocol == Protocol::kUpload;
        default:
            return more.empty();
    }
}

}  // namespace

bool ParseFault(const std::string& order, Fault& fault, std::string& error) {
    fault = {};
    fault.order = order;
    std::string rest = order;
    const std::string protocol = TakePiece(rest), which = TakePiece(rest), what = TakePiece(rest);
    static const std::map<std::string, Protocol> kProtocols = {
        {"config", Protocol::kConfig}, {"traceids", Protocol::kTraceIds}, {"upload", Protocol::kUpload}};
    const auto known = kProtocols.find(protocol);
    if (known != kProtocols.end()) fault.protocol = known->second;
    if (known == kProtocols.end())
        error = "\"" + protocol + "\" is no protocol; there are \"config\", \"traceids\" and \"upload\"";
    else if (!ReadWhich(which, fault))
        error =
            "\"" + which + "\" names no requests; a number does, \"3-5\", \"3-\", \"+1\" for the next, \"*\" for all";
    else if (!ReadWhat(what, rest, fault))
        error = "\"" + what + (rest.empty() ? "" : ":" + rest) + "\" is no fault of " + protocol + "; see --help";
    else
        return true;
    return false;
}

void FaultList::Add(Fault fault, uint64_t served) {
    if (fault.isFromNow) {
        fault.first += served;
        fault.last = fault.last > UINT64_MAX - served ? UINT64_MAX : fault.last + served;
    }
    const std::lock_guard<std::mutex> guard(_mutex);
    _faults.push_back(std::move(fault));
}

std::vector<Fault> FaultList::For(Protocol protocol, uint64_t number) const {
    const std::lock_guard<std::mutex> guard(_mutex);
    std::vector<Fault> found;
    std::copy_if(_faults.begin(), _faults.end(), std::back_inserter(found), [=](const Fault& fault) {
        return fault.protocol == protocol && number >= fault.first && number <= fault.last;
    });
    return found;
}

std::vector<std::string> FaultList::Orders() const {
    const std::lock_guard<std::mutex> guard(_mutex);
    std::vector<std::string> orders;
    for (const Fault& fault : _faults)
        orders.push_back(fault.order);
    return orders;
}

void FaultList::Clear() {
    const std::lock_guard<std::mutex> guard(_mutex);
    _faults.clear();
}

}  // namespace OrvaneDevServer
