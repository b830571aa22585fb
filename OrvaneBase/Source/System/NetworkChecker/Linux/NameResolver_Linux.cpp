#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <utility>

#include "System/NetworkChecker/NameResolver.h"
#include "System/NetworkChecker/WorkerPool.h"

namespace Quern {
namespace {

// How many lookups are under way at a time. One that no name server answers keeps its thread for ten seconds and more.
constexpr size_t kThreads = 16;

// `flags` are those of getaddrinfo.
NameResolver::Answer LookUp(const std::string& host, int flags) {
    addrinfo hints{};
    hints.ai_flags = flags;
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_DGRAM;  // one type, so that each address comes once
    addrinfo* list = nullptr;
    NameResolver::Answer answer;
    answer.errorCode = getaddrinfo(host.c_str(), nullptr, &hints, &list);
    if (answer.errorCode != 0) {
        answer.errorDomain = NameResolver::kErrorDomainNetDB;
        return answer;
    }
    for (const addrinfo* entry = list; entry; entry = entry->ai_next) {
        if (entry->ai_family == AF_INET) {
            const auto* address = reinterpret_cast<const sockaddr_in*>(entry->ai_addr);
            answer.addresses.push_back(MakeSocketAddress(kFamilyIPv4, &address->sin_addr, 0));
        } else if (entry->ai_family == AF_INET6) {
            const auto* address = reinterpret_cast<const sockaddr_in6*>(entry->ai_addr);
            answer.addresses.push_back(MakeSocketAddress(kFamilyIPv6, &address->sin6_addr, 0));
        }
    }
    freeaddrinfo(list);
    return answer;
}

class SystemNameResolver final : public NameResolver {
public:
    Lookup Start(const std::string& host, Done done, Answer& failure) override {
        auto lookup = std::make_shared<int>();
        // An address needs no server, and so no thread that one may hold up.
        const Answer literal = LookUp(host, AI_NUMERICHOST);
        if (literal.errorDomain == 0) {
            done(literal);
            return lookup;
        }
        const bool isPushed = _pool.Push([host, done = std::move(done), wanted = std::weak_ptr<int>(lookup)] {
            if (!wanted.expired()) done(LookUp(host, 0));
        });
        if (isPushed) return lookup;
        failure.errorDomain = kErrorDomainNetDB;
        failure.errorCode = EAI_AGAIN;
        return nullptr;
    }

private:
    WorkerPool _pool{"NameResolver", kThreads};
};

}  // namespace

template <>
std::shared_ptr<NameResolver> Seam<NameResolver>::MakeBuiltIn() {
    return std::make_shared<SystemNameResolver>();
}

}  // namespace Quern
