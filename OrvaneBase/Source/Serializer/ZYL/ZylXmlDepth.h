// Guards the XML parser, which descends by recursion, against texts that would exhaust the stack.
#ifndef ORVANE_SERIALIZER_ZYL_ZYL_XML_DEPTH_H
#define ORVANE_SERIALIZER_ZYL_ZYL_XML_DEPTH_H

#include <cstddef>

namespace Quern {

// Far deeper than any object nests.
constexpr int kMaxXmlDepth = 1000;

// Whether the parser, given this text, would hold no more than `limit` elements open at any moment. Of a text that the
// parser would reject, only what stands before the fault counts.
// REQUIRES: text has at most `size` characters before its terminator; limit is not negative.
bool IsXmlDepthWithin(const char* text, size_t size, int limit);

}  // namespace Quern

#endif
