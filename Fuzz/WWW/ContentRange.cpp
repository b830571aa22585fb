// Content-Range: what is read from any text is a range that lies within its total, and reads the same when it is
// written anew; what is refused leaves the caller's range alone.
#include "System/WWW/ContentRange.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Quern::ContentRange range{-7, -8, -9};
    if (!Quern::ParseContentRange({reinterpret_cast<const char*>(data), size}, range)) {
        if (range.first != -7 || range.last != -8 || range.total != -9) abort();
        return 0;
    }
    if (range.first < 0 || range.last < range.first || range.total < -1) abort();
    if (range.total >= 0 && range.last >= range.total) abort();
    const std::string total = range.total < 0 ? "*" : std::to_string(range.total);
    const std::string text = "bytes " + std::to_string(range.first) + "-" + std::to_string(range.last) + "/" + total;
    Quern::ContentRange again;
    if (!Quern::ParseContentRange(text, again) || again.first != range.first || again.last != range.last ||
        again.total != range.total)
        abort();
    return 0;
}
