// URL decoding of texts inside its contract: the process ends at any other, on purpose, so such inputs are mended
// first.
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "Serializer/URLEncoder/URLEncoder.h"

namespace {

// Each "%" gets two letters or digits behind it.
std::string Mended(const uint8_t* data, size_t size) {
    std::string text;
    for (size_t i = 0; i < size; ++i) {
        text += static_cast<char>(data[i]);
        if (data[i] != '%') continue;
        for (int digit = 0; digit < 2; ++digit) {
            const bool fits = i + 1 < size && data[i + 1] < 0x80 && isalnum(data[i + 1]);
            text += fits ? static_cast<char>(data[++i]) : '0';
        }
    }
    return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text = Mended(data, size);
    const std::string decoded = Quern::URLEncoder::Decode(text);
    if (decoded.size() > text.size()) abort();
    const std::string encoded = Quern::URLEncoder::Encode(decoded);
    if (Quern::URLEncoder::Decode(encoded) != decoded) abort();
    return 0;
}
