#include "DevServer/Lint/StoredValue.h"

#include <strings.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>

namespace OrvaneDevServer {
namespace {

constexpr size_t kLongestNumber = 18;

// A text of the answer, up to its first NUL: the client's texts end there.
std::string TextOf(const Json::Value& value) {
    const std::string text = value.asString();
    return text.substr(0, text.find('\0'));
}

std::string ThroughNumber(const std::string& text) {
    char printed[kLongestNumber + 10];
    if (text.find('.') == std::string::npos)
        snprintf(printed, sizeof printed, "%lld", strtoll(text.c_str(), nullptr, 10));
    else
        snprintf(printed, sizeof printed, "%f", strtod(text.c_str(), nullptr));
    return printed;
}

// Blanks alone: the client leaves tabs where they are.
std::string Trimmed(const std::string& text) {
    const size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos) return "";
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string PrintedDouble(double number) {
    char text[40];
    snprintf(text, sizeof text, "%.15g", number);
    return text;
}

}  // namespace

bool IsNumberText(const std::string& text) {
    if (text.empty() || text == "-" || text == "." || text.size() > kLongestNumber) return false;
    const std::string digits = text.substr(text.starts_with('-') ? 1 : 0);
    return digits.find_first_not_of("0123456789.") == std::string::npos &&
           std::count(digits.begin(), digits.end(), '.') <= 1;
}

StoredValue StoreValue(const Json::Value& value) {
    StoredValue stored;
    if (value.isString()) {
        const std::string text = TextOf(value);
        stored.written = IsNumberText(text) ? ThroughNumber(text) : text;
    } else if (value.type() == Json::intValue) {
        stored.written = std::to_string(value.asInt64());
    } else if (value.type() == Json::uintValue) {
        stored.written = std::to_string(static_cast<int64_t>(value.asUInt64()));  // printed with a sign
    } else {
        return stored;
    }
    stored.isKept = true;
    stored.isFound = !stored.written.empty();
    stored.text = Trimmed(stored.written.substr(0, stored.written.find('#')));
    return stored;
}

int32_t IntOf(const StoredValue& value) {
    const long long number = strtoll(value.text.c_str(), nullptr, 10);
    return static_cast<int32_t>(
        std::clamp<long long>(number, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()));
}

Reads ReadsOf(const StoredValue& value) {
    const ReadResult manifest{Answerer::kManifest, ""}, byDefault{Answerer::kDefault, ""};
    if (!value.isFound) return {manifest, manifest, manifest, manifest, manifest};
    if (value.text.empty()) return {manifest, byDefault, byDefault, byDefault, {Answerer::kServer, ""}};
    char* end = nullptr;
    const double real = strtod(value.text.c_str(), &end);
    Reads reads;
    reads.asInt.text = std::to_string(IntOf(value));
    reads.asLong.text = std::to_string(strtoll(value.text.c_str(), nullptr, 10));
    reads.asDouble = end == value.text.c_str() ? byDefault : ReadResult{Answerer::kServer, PrintedDouble(real)};
    reads.asBool.text = strcasecmp(value.text.c_str(), "true") == 0 ? "true" : "false";
    reads.asString.text = value.text;
    return reads;
}

}  // namespace OrvaneDevServer
