/// \file INetworkChecker.h
/// Ping, traceroute and name lookup, for code that does not link to the library. Header-only: link liborvaneruntime.so
/// and nothing else. C++11.
///
///     static void OnPing(Quern::PingResult& result) { ... }
///     if (Quern::INetworkChecker* checker = gs_OrvaneNetworkChecker())
///         checker->Ping("example.org", 7, OnPing, 3, 10);
///
/// Five diagnostics run at a time; further ones wait. Callbacks come on the main thread, through its run loop
/// (Orvane/MainRunLoop.h) or, once the engine has asked for that, in Quern_UpdateUIThread.
///
/// A system may not allow a process any ICMP: on Linux it takes net.ipv4.ping_group_range to hold one of the process's
/// groups, or CAP_NET_RAW. A ping then ends with the result of a failure, and a traceroute without any callback: see
/// gs_OrvaneCheckIcmp. A traceroute of 30 silent hops takes four and a half minutes: whoever cannot wait for it sets a
/// deadline of his own. The threads of the diagnostics do not follow a process into its child: fork, then exec.
///
/// A "#" in a host shifts what is behind it in its result by one field: the results go through texts whose fields end
/// with one.
///
/// What a callback gets is opaque here: Orvane/NetworkReports.h reads it. The functions at the end give its bytes:
/// integers are big-endian and of 4 bytes, signed; a text is its length and its bytes; a list is its count and its
/// entries.
///
///   ping        request id, host, seven numbers (see Ping)
///   traceroute  request id, host, hop count, list of hops (two texts each: address, value), status
///   lookup      request id, host, list of addresses (a text each), status
#ifndef ORVANE_I_NETWORK_CHECKER_H
#define ORVANE_I_NETWORK_CHECKER_H

#include <cstdint>

#include "Orvane/RunTime.h"

namespace Quern {

class PingResult;
class TraceRouteResult;
class NSLookupResult;

/// The order of the virtual operations is a contract between libraries.
///
/// Each operation may be called from any thread and returns at once. `host` is a name or an address, and is copied;
/// `requestId` comes back untouched. A result belongs to the library and is valid during the callback.
class INetworkChecker {
public:
    /// Pings over IPv4: sends all packets at once, and counts replies for `timeOut` seconds, or until the first
    /// multiple of `timeOut` / `packageNum` seconds after the last one.
    ///
    /// The result's host is empty, and its numbers are: 0; packets asked for; replies; the times of all replies
    /// together; the shortest; the mean; the longest. Times are whole milliseconds. Without any reply the total is
    /// `timeOut` times 1000 and the other times are 0. If the name is not resolved within `timeOut` + 1 seconds, or the
    /// system does not allow it, all but the first are 0, and that one is the host where it reads as a number.
    ///
    /// A null argument, or one of 0 among the last two, is logged, and no callback comes.
    /// \param timeOut in seconds, 1 to 255
    /// \param packageNum 1 to 255
    virtual void Ping(const char* host, int requestId, void (*callback)(PingResult& result), unsigned char timeOut,
                      unsigned char packageNum) = 0;

    /// Finds the hops towards the host, over IPv4 or IPv6, whichever the system prefers. A silent hop takes nine
    /// seconds.
    ///
    /// A hop is its address and, as texts, the mean time of three probes in whole milliseconds, or -1 to -3, how many
    /// of the three were lost; "TimeOut" and "-3" for a silent one. The last hop is the host if it was reached. The
    /// status is always 0. An unknown host gives 30 silent hops.
    ///
    /// A null host is logged, and no callback comes; nor does one where the system gives no socket.
    /// \param callback null is logged when the result is there
    /// \param maxTtl how many hops at most; one is tried even with 0
    virtual void TraceRoute(const char* host, int requestId, void (*callback)(TraceRouteResult& result),
                            unsigned char maxTtl) = 0;

    /// Looks up the addresses of a name, 30 seconds at most.
    ///
    /// The list of addresses ends with the text "0", or, if there is none, is the text "1" alone. IPv4 addresses are in
    /// dotted form; an IPv6 one reads "0.0.0.0". The status is always 0. A null host, or one with other characters than
    /// ASCII ones, has no addresses.
    /// \param callback null is logged when the result is there
    virtual void NSLookup(const char* host, int requestId, void (*callback)(NSLookupResult& result)) = 0;

    /// Inside the library only; other libraries call gs_OrvaneNetworkChecker.
    static INetworkChecker* GetInstance();

protected:
    ~INetworkChecker() = default;
};

}  // namespace Quern

/// The checker, made at the first call. Any thread.
/// \return the checker, valid until the library is taken down (IBase::Release): ask anew at each use. Null without the
///         library.
inline Quern::INetworkChecker* gs_OrvaneNetworkChecker() {
    return static_cast<Quern::INetworkChecker*>(
        orvane_class_perform(orvane_class_lookup("OrvaneNetworkChecker"), "getNativeNetworkChecker", nullptr));
}

/// Whether the system lets this process send and receive ICMP messages. Any thread.
/// \param ipv6 which of the two protocols
/// \return 0 if it does; else the error as errno has it, EACCES or EPERM for a missing right. -1 without the library.
inline int gs_OrvaneCheckIcmp(bool ipv6) {
    const orvane_class* cls = orvane_class_lookup("OrvaneNetworkChecker");
    if (!orvane_class_get_class_method(cls, "checkIcmp:")) return -1;
    void* arguments[] = {reinterpret_cast<void*>(uintptr_t(ipv6))};
    return static_cast<int>(reinterpret_cast<intptr_t>(orvane_class_perform(cls, "checkIcmp:", arguments)));
}

/// The bytes of a result.
/// \param buffer where they go; `*size` bytes long, at least one more than they need
/// \param size set to their count
/// \return false, with nothing changed, if the buffer is null or too small, or without the library
inline bool gs_OrvaneEncodePingResult(const Quern::PingResult& result, char* buffer, int* size) {
    void* arguments[] = {const_cast<Quern::PingResult*>(&result), buffer, size};
    return orvane_class_perform(orvane_class_lookup("OrvaneNetworkChecker"),
                                "encodePingResult:buffer:size:", arguments) != nullptr;
}
/// The same for a traceroute's result; 255 hops of IPv6 need at most 16 KiB, beside the host.
inline bool gs_OrvaneEncodeTraceRouteResult(const Quern::TraceRouteResult& result, char* buffer, int* size) {
    void* arguments[] = {const_cast<Quern::TraceRouteResult*>(&result), buffer, size};
    return orvane_class_perform(orvane_class_lookup("OrvaneNetworkChecker"),
                                "encodeTraceRouteResult:buffer:size:", arguments) != nullptr;
}
/// The same for a lookup's result.
inline bool gs_OrvaneEncodeNSLookupResult(const Quern::NSLookupResult& result, char* buffer, int* size) {
    void* arguments[] = {const_cast<Quern::NSLookupResult*>(&result), buffer, size};
    return orvane_class_perform(orvane_class_lookup("OrvaneNetworkChecker"),
                                "encodeNSLookupResult:buffer:size:", arguments) != nullptr;
}

#endif
