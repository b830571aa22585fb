// The network checker as games and siblings reach it: by the name of a run-time class. Its results cross as bytes.
#include <cerrno>

#include "Base/RunTimeClass.h"
#include "System/NetworkChecker/ANetworkChecker.h"
#include "System/NetworkChecker/IcmpSocket.h"

namespace Quern {
namespace {

void* GetNativeNetworkChecker(orvane_object*, const char*, void* const*) {
    return INetworkChecker::GetInstance();
}

void* CheckIcmp(orvane_object*, const char*, void* const* arguments) {
    const bool isIPv6 = arguments && arguments[0];
    const bool isAllowed = IcmpSockets::Current().Open(isIPv6 ? kFamilyIPv6 : kFamilyIPv4) != nullptr;
    return reinterpret_cast<void*>(static_cast<intptr_t>(isAllowed ? 0 : errno));
}

template <typename Result>
void* Encode(orvane_object*, const char*, void* const* arguments) {
    if (!arguments || !arguments[0] || !arguments[2]) return nullptr;
    const auto* result = static_cast<const Result*>(arguments[0]);
    const bool isEncoded = result->encode(static_cast<char*>(arguments[1]), *static_cast<int*>(arguments[2]));
    return reinterpret_cast<void*>(static_cast<intptr_t>(isEncoded));
}

}  // namespace

void RegisterNetworkCheckerClass() {
    RegisterRunTimeClass("OrvaneNetworkChecker", {},
                         {{"getNativeNetworkChecker", GetNativeNetworkChecker},
                          {"checkIcmp:", CheckIcmp},
                          {"encodePingResult:buffer:size:", Encode<PingResult>},
                          {"encodeTraceRouteResult:buffer:size:", Encode<TraceRouteResult>},
                          {"encodeNSLookupResult:buffer:size:", Encode<NSLookupResult>}});
}

}  // namespace Quern
