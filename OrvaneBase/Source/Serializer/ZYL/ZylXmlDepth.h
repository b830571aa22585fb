// Guards the XML parser, which descends by recursion, against texts that would exhaust the stack.
#ifndef ORVANE_SERIALIZER_ZYL_ZYL_XML_DEPTH_H
#define ORVANE_SERIALIZER_ZYL_ZYL_XML_DEPTH_H

namespace Quern {

// Far deeper than any object nests, and some 300 KiB of stack on a small thread.
constexpr int kMaxXmlDepth = 1000;

// Whether the parser, given this text, would hold no more than `limit` elements open at any moment. Of a text that the
// parser would reject, only what stands before the fault counts.
bool IsXmlDepthWithin(const char* text, int limit);

}  // namespace Quern

#endif
