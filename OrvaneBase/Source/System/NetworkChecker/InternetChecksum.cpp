#include "System/NetworkChecker/InternetChecksum.h"

#include <cstring>

namespace Quern {

uint16_t in_cksum(const void* data, size_t length) {
    const auto* bytes = static_cast<const uint8_t*>(data);
    uint32_t sum = 0;
    for (; length > 1; length -= 2, bytes += 2) {
        uint16_t word;
        // Copied, since a packet need not be aligned.
        memcpy(&word, bytes, sizeof word);
        sum += word;
    }
    if (length == 1) {
        uint16_t last = 0;
        memcpy(&last, bytes, 1);
        sum += last;
    }
    // The first folding may carry once more.
    sum = (sum >> 16) + (sum & 0xFFFF);
    sum += sum >> 16;
    return static_cast<uint16_t>(~sum);
}

}  // namespace Quern
