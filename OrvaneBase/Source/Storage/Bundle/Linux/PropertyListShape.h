// Measures how deep and how large a property list would be in memory, without building it.
//
// The parser's tree recurses once a level when it is freed, and a binary list may name one object in many places, each
// of which becomes a copy: a file of a hundred bytes can ask for more memory than there is. So the shape is measured
// first.
#ifndef ORVANE_STORAGE_BUNDLE_LINUX_PROPERTY_LIST_SHAPE_H
#define ORVANE_STORAGE_BUNDLE_LINUX_PROPERTY_LIST_SHAPE_H

#include <cstdint>
#include <string>

namespace Quern {

// Each copy of an object copies its text or data too. So that large ones count, this many of their bytes are taken for
// one more node.
constexpr uint64_t kPropertyListBytesPerNode = 64;

struct PropertyListLimits {
    uint32_t depth;  // dictionaries and lists inside each other, the outermost among them
    uint64_t nodes;  // objects and keys once unfolded, with the weight of their bytes
};

// Tells whether the list stays within both limits. Also returns false where the parser would fail badly: for a binary
// list whose tables lead outside its bytes, and for a key that is no text or holds a zero byte, at which the parser
// ends the process. A list that passes may still have any other fault of syntax. Any thread.
bool IsPropertyListWithin(const std::string& bytes, const PropertyListLimits& limits);

}  // namespace Quern

#endif
