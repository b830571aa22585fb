#include "System/NetworkChecker/ResultText.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstring>

namespace Quern {
namespace {

// A message that grows field by field.
class Fields {
public:
    explicit Fields(int requestId) : _message(*buildResult(nullptr, std::to_string(requestId).c_str())) {}
    void Add(const char* field) { _message = std::move(*buildResult(&_message, field)); }
    void Add(const std::string& field) { Add(field.c_str()); }
    std::string Take() { return std::move(_message); }

private:
    std::string _message;
};

// One value for the probes of a hop that answered.
int HopValue(const TracerouteRecord& record) {
    float sum = 0;
    int lost = 0;
    for (const std::optional<double>& duration : record.recvDurations) {
        if (duration)
            sum += static_cast<float>(*duration * 1000);
        else
            --lost;
    }
    return lost != 0 ? lost : static_cast<int>(sum / 3);
}

}  // namespace

std::unique_ptr<std::string> buildResult(const std::string* message, const char* field) {
    if (!message && !field) return nullptr;
    auto result = std::make_unique<std::string>(message ? *message : "");
    if (field) *result += field;
    *result += "#";
    return result;
}

std::string PingText(const std::string& message, const std::string& ip, unsigned int asked, unsigned int replies,
                     uint64_t total, uint64_t minimum, uint64_t average, uint64_t maximum, unsigned int flag) {
    char numbers[128];
    snprintf(numbers, sizeof numbers, "#%u#%u#%" PRIu64 "#%" PRIu64 "#%" PRIu64 "#%" PRIu64 "#%u#", asked, replies,
             total, minimum, average, maximum, flag);
    return message + "#" + ip + numbers;
}

std::string TraceRouteText(int requestId, const char* host, const std::vector<TracerouteRecord>& records,
                           bool succeed) {
    Fields fields(requestId);
    fields.Add(host);
    fields.Add(std::to_string(records.size()));
    for (const TracerouteRecord& record : records) {
        fields.Add(record.ip ? *record.ip : "TimeOut");
        fields.Add(record.ip ? std::to_string(HopValue(record)) : "-3");
    }
    fields.Add(succeed ? "0" : "1");
    return fields.Take();
}

std::string NSLookupText(int requestId, const char* host, const std::vector<std::string>& addresses) {
    Fields fields(requestId);
    fields.Add(host);
    for (const std::string& address : addresses)
        fields.Add(address);
    fields.Add(addresses.empty() ? "1" : "0");
    return fields.Take();
}

std::unique_ptr<char[]> HeapText(const std::string& text) {
    auto copy = std::make_unique<char[]>(text.size() + 1);
    memcpy(copy.get(), text.c_str(), text.size() + 1);
    return copy;
}

char* LeaveBehind(const char* text) {
    const size_t size = strlen(text) + 1;
    char* copy = new char[size];
    memcpy(copy, text, size);
    return copy;
}

}  // namespace Quern
