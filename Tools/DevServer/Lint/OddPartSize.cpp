// How much of a file a device sends at once.
#include "DevServer/Lint/Rules.h"

namespace OrvaneDevServer {

void FindOddPartSize(const std::string& module, const Json::Value& keys, Findings& findings) {
    constexpr char kKey[] = "part_size";
    constexpr int32_t kMost = 64 << 20, kLeast = 1024;
    if (module != "Upload" || !keys.isObject() || !keys.isMember("upload_id")) return;
    const auto add = [&](Severity severity, const std::string& text) {
        findings.push_back({severity, "odd-part-size", module, kKey, text});
    };
    const StoredValue stored = StoreValue(keys.get(kKey, Json::Value()));
    const int32_t size = IntOf(stored);
    if (!stored.isFound)
        add(Severity::kError, "is missing, which is 0: the device sends empty parts, and the upload never ends");
    else if (size <= 0)
        add(Severity::kError, "a part of " + std::to_string(size) + " bytes: the upload never ends");
    else if (size > kMost)
        add(Severity::kError, "this server takes parts of 64 MB at most, and a device holds two in memory");
    else if (size < kLeast)
        add(Severity::kWarning, "a request for every " + std::to_string(size) + " bytes");
}

}  // namespace OrvaneDevServer
