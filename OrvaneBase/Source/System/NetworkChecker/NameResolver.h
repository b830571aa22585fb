// The addresses of a host's name.
#ifndef ORVANE_SYSTEM_NETWORK_CHECKER_NAME_RESOLVER_H
#define ORVANE_SYSTEM_NETWORK_CHECKER_NAME_RESOLVER_H

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Base/Seam.h"
#include "System/NetworkChecker/SocketAddress.h"

namespace Quern {

// Any thread. A lookup cannot be interrupted on most systems: an implementation does it on a thread of its own, so that
// whoever asked can go away at any time.
class NameResolver : public Seam<NameResolver> {
public:
    // The domain of errors whose code is one of getaddrinfo.
    static constexpr int kErrorDomainNetDB = 12;

    struct Answer {
        int errorDomain = 0;  // 0 for a success
        int errorCode = 0;
        std::vector<SocketAddress> addresses;  // in the system's order of preference, with port 0
    };
    using Done = std::function<void(const Answer& answer)>;
    // Letting it go abandons the lookup: if it has not begun, it never will. `done` may be called all the same.
    using Lookup = std::shared_ptr<void>;

    // Begins a lookup and returns. `done` is called once, on any thread, with no lock held; later than anybody wants to
    // wait, or never, where name servers do not answer.
    // Returns null, with `failure` filled and `done` never called, if the lookup cannot be begun.
    virtual Lookup Start(const std::string& host, Done done, Answer& failure) = 0;
};

template <>
std::shared_ptr<NameResolver> Seam<NameResolver>::MakeBuiltIn();

// Looks a name up and waits for the answer, 30 s at most. False, with nothing in `addresses`, if none came or it is an
// error; true may also come without addresses.
bool ResolveHost(const std::string& host, std::vector<SocketAddress>& addresses);

}  // namespace Quern

#endif
