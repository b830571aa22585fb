#include "ReportService.h"

#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <fstream>
#include <string>

#include "JsonEvent.h"

namespace Pell {

const char* ReportService::GetName() const {
    return kServiceName;
}

const char* ReportService::GetPluginName() const {
    return kPluginName;
}

Orvane::Plugin::IEvent* ReportService::CreateEvent(int srcID, const char* eventName) {
    if (!eventName) return nullptr;
    if (_forwarder.Wants(eventName)) return new ForwardedEvent(_forwarder, srcID, eventName);
    return new JsonEvent(srcID, eventName);
}

void ReportService::DestroyEvent(Orvane::Plugin::IEvent** event) {
    if (!event) return;
    delete *event;
    *event = nullptr;
}

unsigned int ReportService::GetDeviceInfo(const char* key, char** buffer, unsigned int size) {
    constexpr unsigned int kWhole = 0, kCut = 1, kUnknown = 2;
    const char* path = getenv("PELL_DEVICE");
    if (!path || !key || !buffer || !*buffer || size == 0) return kUnknown;
    const std::string head = std::string(key) + "=";
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        if (line.compare(0, head.size(), head) != 0) continue;
        const size_t length = line.size() - head.size();
        // A value that does not fit is cut, and still ends with a zero: the caller tells by the result.
        const size_t copied = std::min<size_t>(length, size - 1);
        memcpy(*buffer, line.data() + head.size(), copied);
        (*buffer)[copied] = '\0';
        return copied == length ? kWhole : kCut;
    }
    return kUnknown;
}

}  // namespace Pell
