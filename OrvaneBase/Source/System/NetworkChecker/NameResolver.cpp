#include "System/NetworkChecker/NameResolver.h"

#include <chrono>
#include <future>
#include <utility>

namespace Quern {
namespace {

constexpr std::chrono::seconds kLongestLookup{30};

}  // namespace

bool ResolveHost(const std::string& host, std::vector<SocketAddress>& addresses) {
    addresses.clear();
    // Shared with the callback, which may come when nobody waits any more.
    const auto promise = std::make_shared<std::promise<NameResolver::Answer>>();
    std::future<NameResolver::Answer> future = promise->get_future();
    NameResolver::Answer answer;
    const NameResolver::Lookup lookup = NameResolver::Current().Start(
        host, [promise](const NameResolver::Answer& given) { promise->set_value(given); }, answer);
    if (!lookup || future.wait_for(kLongestLookup) != std::future_status::ready) return false;
    answer = future.get();
    if (answer.errorDomain != 0) return false;
    addresses = std::move(answer.addresses);
    return true;
}

}  // namespace Quern
