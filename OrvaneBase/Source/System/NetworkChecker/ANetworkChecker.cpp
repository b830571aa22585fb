#include "System/NetworkChecker/ANetworkChecker.h"

#include <arpa/inet.h>

#include <algorithm>
#include <optional>
#include <string>

#include "Base/XLog.h"
#include "Orvane/OrvaneCore.h"
#include "System/Application/PerformSelector.h"
#include "System/NetworkChecker/NameResolver.h"
#include "System/NetworkChecker/PingDelegate.h"
#include "System/NetworkChecker/ResultText.h"
#include "System/NetworkChecker/Traceroute.h"

namespace Quern {
namespace {

// A ping's text has eleven fields; the record is filled from the first nine.
constexpr int kFewestPingFields = 9;
constexpr int kFirstHopField = 3;

bool IsAscii(const std::string& text) {
    return std::all_of(text.begin(), text.end(), [](unsigned char c) { return c < 0x80; });
}

// The word behind the first four bytes of each address: the address with IPv4, zeros with IPv6.
std::vector<std::string> LookUp(const std::string& host) {
    std::vector<std::string> texts;
    std::vector<SocketAddress> addresses;
    if (!IsAscii(host) || !ResolveHost(host, addresses)) return texts;
    for (const SocketAddress& address : addresses) {
        if (address.size() < 8) continue;
        char text[INET_ADDRSTRLEN] = "";
        inet_ntop(AF_INET, address.data() + 4, text, sizeof text);
        texts.emplace_back(text);
    }
    return texts;
}

template <typename Result>
auto CallbackOf(void* callback) {
    return reinterpret_cast<void (*)(Result&)>(callback);
}

}  // namespace

std::atomic<ANetworkChecker*> ANetworkChecker::s_pInstance{nullptr};

INetworkChecker* INetworkChecker::GetInstance() {
    return ANetworkChecker::GetInstance();
}

// Of two first callers one installs its checker and the other takes that.
ANetworkChecker* ANetworkChecker::GetInstance() {
    ANetworkChecker* current = s_pInstance.load(std::memory_order_acquire);
    if (current) return current;
    auto* const made = new ANetworkChecker;
    if (s_pInstance.compare_exchange_strong(current, made, std::memory_order_acq_rel)) return made;
    delete made;
    return current;
}

void ANetworkChecker::ReleaseInstance() {
    delete s_pInstance.exchange(nullptr, std::memory_order_acq_rel);
}

ANetworkChecker::ANetworkChecker() : CTargetBase(false) {
    AddApplicationQuitCallback(ReleaseInstance);
    Init();
}

void ANetworkChecker::Init() {
    _state = std::make_shared<NetworkCheckerState>(this);
}

ANetworkChecker::~ANetworkChecker() {
    _state->Detach();
    // Whichever of the two queues they are in.
    Quern_RemoveTargetFromMainThread(this);
    Quern_IgnoreUIThread(this);
}

void ANetworkChecker::Ping(const char* host, int requestId, void (*callback)(PingResult&), unsigned char timeOut,
                           unsigned char packageNum) {
    if (!host) {
        ORVANE_LOG_ERROR("Quern::ANetworkChecker::Ping: IP address is null");
        return;
    }
    if (!callback) {
        ORVANE_LOG_ERROR("pingCallback is null");
        return;
    }
    if (timeOut == 0) {
        ORVANE_LOG_ERROR("timeOut<=0");
        return;
    }
    if (packageNum == 0) {
        ORVANE_LOG_ERROR("packageNum<=0");
        return;
    }
    const auto delegate = std::make_shared<PingDelegate>(_state);
    _state->SafeAdd(delegate);
    delegate->pingCallback = callback;
    delegate->pingTimeRecorderDict = std::make_unique<std::map<uint16_t, uint64_t>>();
    delegate->pinger = OrvaneCoreSimplePing::initWithHostName(host);
    delegate->pinger->addressStyle = OrvaneCoreSimplePing::kAddressStyleIPv4;
    delegate->pinger->delegate = delegate.get();
    delegate->timeOut = timeOut;
    delegate->packageNumber = packageNum;
    delegate->ip = host;
    delegate->returnMessage = *buildResult(nullptr, std::to_string(requestId).c_str());
    const bool isQueued = _state->_network_queue.Push([state = _state, delegate] {
        if (state->IsDetached())
            state->SafeDelete(delegate.get());
        else
            delegate->Run();
    });
    if (!isQueued) delegate->Fail();
}

void ANetworkChecker::TraceRoute(const char* host, int requestId, void (*callback)(TraceRouteResult&),
                                 unsigned char maxTtl) {
    if (!host) {
        ORVANE_LOG_ERROR("Quern::ANetworkChecker::TraceRoute: IP address is null");
        return;
    }
    const std::string hostName = host;
    const auto state = _state;
    const auto finish = [=](const std::vector<TracerouteRecord>& results, bool succeed) {
        state->Notify(&ANetworkChecker::NotifyTraceRouteFinish,
                      HeapText(TraceRouteText(requestId, hostName.c_str(), results, succeed)), callback);
    };
    const bool isQueued = _state->_network_queue.Push([=] {
        if (state->IsDetached()) return;
        Traceroute::startTracerouteWithHost_totalTTL_queue_stepCallback_finish(
            hostName, maxTtl, nullptr, [](const TracerouteRecord&) {}, finish);
    });
    if (!isQueued) finish({}, false);
}

void ANetworkChecker::NSLookup(const char* host, int requestId, void (*callback)(NSLookupResult&)) {
    const auto name = host ? std::make_optional<std::string>(host) : std::nullopt;
    const auto state = _state;
    const auto finish = [=](const std::vector<std::string>& addresses) {
        const std::string text = NSLookupText(requestId, name ? name->c_str() : nullptr, addresses);
        state->Notify(&ANetworkChecker::NotifyNSLookupFinish, HeapText(text), callback);
    };
    const bool isQueued = _state->_network_queue.Push([=] {
        if (!state->IsDetached()) finish(name ? LookUp(*name) : std::vector<std::string>());
    });
    if (!isQueued) finish({});
}

template <typename Callback>
void ANetworkChecker::Post(void (ANetworkChecker::*handler)(void*, void*), char* text, Callback callback) {
    const CCritical guard(&_state->_mutex);
    if (text) _posted.emplace_back(text);
    PerformSelectorOnUIThread(this, static_cast<void (CTargetBase::*)(void*, void*)>(handler), text,
                              reinterpret_cast<void*>(callback));
}

void ANetworkChecker::NotifyPingFinish(char* text, void (*callback)(PingResult&)) {
    if (!callback) {
        ORVANE_LOG_ERROR("pingCallback is null");
        return;
    }
    Post(&ANetworkChecker::HandlePingResultOnUIThread, text, callback);
}

void ANetworkChecker::NotifyTraceRouteFinish(char* text, void (*callback)(TraceRouteResult&)) {
    if (!callback) {
        ORVANE_LOG_ERROR("traceRouteCallback is null");
        return;
    }
    Post(&ANetworkChecker::HandleTraceRouteResultOnUIThread, text, callback);
}

void ANetworkChecker::NotifyNSLookupFinish(char* text, void (*callback)(NSLookupResult&)) {
    if (!callback) {
        ORVANE_LOG_ERROR("nsLookupCallback is null");
        return;
    }
    Post(&ANetworkChecker::HandleNSLookupResultOnUIThread, text, callback);
}

std::unique_ptr<char[]> ANetworkChecker::TakePosted(void* text) {
    auto* const characters = static_cast<char*>(text);
    const CCritical guard(&_state->_mutex);
    const auto entry = std::find_if(_posted.begin(), _posted.end(),
                                    [characters](const auto& posted) { return posted.get() == characters; });
    if (entry == _posted.end()) return std::unique_ptr<char[]>(characters);
    std::unique_ptr<char[]> taken = std::move(*entry);
    _posted.erase(entry);
    return taken;
}

void ANetworkChecker::HandlePingResultOnUIThread(void* text, void* callback) {
    const std::unique_ptr<char[]> held = TakePosted(text);
    if (!held || !callback) return;
    AArray fields;
    AString::Split(&fields, held.get(), "#");
    if (fields.Count() < kFewestPingFields) return;
    PingResult result;
    result.requestId = fields.AStringAtIndex(0)->AsInt();
    result.host = *fields.AStringAtIndex(1);
    int index = 2;
    for (int* number : {&result.number1, &result.number2, &result.number3, &result.number4, &result.number5,
                        &result.number6, &result.number7})
        *number = fields.AStringAtIndex(index++)->AsInt();
    CallbackOf<PingResult>(callback)(result);
}

void ANetworkChecker::HandleTraceRouteResultOnUIThread(void* text, void* callback) {
    const std::unique_ptr<char[]> held = TakePosted(text);
    if (!held || !callback) return;
    AArray fields;
    AString::Split(&fields, held.get(), "#");
    const int count = fields.Count();
    if (count == 0) return;
    TraceRouteResult result;
    const auto field = [&](int index) { return index < count ? *fields.AStringAtIndex(index) : AString(); };
    result.requestId = field(0).AsInt();
    result.host = field(1);
    result.hopCount = field(2).AsInt();
    for (int hop = 0, index = kFirstHopField; hop < result.hopCount && index < count - 1; ++hop, index += 2) {
        TraceRouteMessage message;
        message.address = field(index);
        message.value = field(index + 1);
        result.hops.Add(message);
    }
    result.status = fields.LastAString()->AsInt();
    CallbackOf<TraceRouteResult>(callback)(result);
}

void ANetworkChecker::HandleNSLookupResultOnUIThread(void* text, void* callback) {
    const std::unique_ptr<char[]> held = TakePosted(text);
    if (!held || !callback) return;
    AArray fields;
    AString::Split(&fields, held.get(), "#");
    const int count = fields.Count();
    NSLookupResult result;
    if (count > 0) result.requestId = fields.AStringAtIndex(0)->AsInt();
    if (count > 1) result.host = *fields.AStringAtIndex(1);
    for (int index = 2; index < count - 1; ++index)
        result.addresses.Add(*fields.AStringAtIndex(index));
    if (count > 0) result.status = fields.LastAString()->AsInt();
    CallbackOf<NSLookupResult>(callback)(result);
}

}  // namespace Quern
