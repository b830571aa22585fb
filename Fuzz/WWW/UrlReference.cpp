// Addresses: a good one holds nothing that could break a request, and its parts lie within it.
#include "System/WWW/UrlReference.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    Quern::UrlReference parts;
    if (!Quern::ParseUrlReference(text, &parts)) return 0;
    for (size_t i = 0; i < size; ++i)
        if (data[i] <= ' ' || data[i] >= 0x7f) abort();
    for (const std::string_view part : {parts.scheme, parts.host})
        if (!part.empty() && (part.data() < text.data() || part.data() + part.size() > text.data() + size)) abort();
    if (parts.IsHttp() && parts.host.empty()) abort();
    return 0;
}
