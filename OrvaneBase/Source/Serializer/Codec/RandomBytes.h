// Random bytes of the system, good enough for keys.
#ifndef ORVANE_SERIALIZER_CODEC_RANDOM_BYTES_H
#define ORVANE_SERIALIZER_CODEC_RANDOM_BYTES_H

#include <cstddef>

namespace Quern {

// Reads exactly `length` bytes from the system's random device. False, and no promise about `out`, if it cannot. Any
// thread.
bool ReadRandom(void* out, size_t length);

}  // namespace Quern

#endif
