// The id of an order names a file on the device.
#include "DevServer/Lint/Rules.h"

namespace OrvaneDevServer {

void FindOddUploadId(const LintedKey& key, Findings& findings) {
    constexpr char kRule[] = "odd-upload-id";
    constexpr size_t kLongest = 255 - (sizeof ".zip" - 1);
    if (!key.Is("Upload", "upload_id") || !key.stored.isKept) return;
    const std::string& id = key.stored.text;
    const auto add = [&](const std::string& why) { findings.push_back(key.Found(Severity::kError, kRule, why)); };
    if (id.empty()) add("an order without an id makes a file of no name");
    if (id.find('/') != std::string::npos) add("an id with a slash sends nothing: it names a file");
    if (id.size() > kLongest) add("an id of more than 251 bytes sends nothing: it names a file");
}

}  // namespace OrvaneDevServer
