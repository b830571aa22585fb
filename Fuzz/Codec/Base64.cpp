// Base64: any text decodes to a bounded number of bytes, and any bytes come back through their text.
#include "Serializer/Codec/Base64.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const std::string bytes = Quern::base64_decode(text);

    size_t accepted = 0;
    while (accepted < size && Quern::is_base64(data[accepted]))
        ++accepted;
    if (bytes.size() != accepted * 3 / 4) abort();

    const std::string encoded = Quern::base64_encode(data, static_cast<unsigned int>(size));
    if (encoded.size() != (size + 2) / 3 * 4 || Quern::base64_decode(encoded) != text) abort();
    return 0;
}
