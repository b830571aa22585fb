// Read from the device, since a library must not touch the state of rand and random.
#include "Serializer/Codec/RandomBytes.h"

#include <errno.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdint>

namespace Quern {

bool ReadRandom(void* out, size_t length) {
    int device = open("/dev/urandom", O_RDONLY | O_CLOEXEC);
    if (device < 0) device = open("/dev/random", O_RDONLY | O_CLOEXEC);
    if (device < 0) return false;
    uint8_t* at = static_cast<uint8_t*>(out);
    while (length > 0) {
        const ssize_t count = read(device, at, length);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) break;
        at += count;
        length -= static_cast<size_t>(count);
    }
    close(device);
    return length == 0;
}

}  // namespace Quern
