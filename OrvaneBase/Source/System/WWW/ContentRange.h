// The header that says which bytes of a file an answer holds.
#ifndef ORVANE_SYSTEM_WWW_CONTENT_RANGE_H
#define ORVANE_SYSTEM_WWW_CONTENT_RANGE_H

#include <string_view>

namespace Quern {

// Content-Range of a partial answer, RFC 9110, section 14.4: "bytes first-last/total". Byte offsets, both inclusive.
struct ContentRange {
    long long first = 0;
    long long last = 0;
    long long total = -1;  // of the whole file; -1 if the server does not know
};

// Reads a header's value. False, with `out` as it was, for anything but bytes, for a range that ends before it begins
// or beyond its total, and for numbers that do not fit.
bool ParseContentRange(std::string_view value, ContentRange& out);

}  // namespace Quern

#endif
