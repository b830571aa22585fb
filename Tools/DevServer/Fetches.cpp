#include "DevServer/Fetches.h"

namespace OrvaneDevServer {

Fetches::Entry::Entry(Fetches& fetches, const std::string& device, const Request& request) : _fetches(fetches) {
    const std::lock_guard<std::mutex> guard(_fetches._mutex);
    const auto [begin, end] = _fetches._byDevice.equal_range(device);
    // Those that are entered already: of two at a time the later one is told of.
    for (auto at = begin; at != end && !device.empty(); ++at)
        _isSecond |= !at->second->senderHasLeft || !at->second->senderHasLeft();
    _at = _fetches._byDevice.emplace(device, &request);
}

Fetches::Entry::~Entry() {
    const std::lock_guard<std::mutex> guard(_fetches._mutex);
    _fetches._byDevice.erase(_at);
}

}  // namespace OrvaneDevServer
