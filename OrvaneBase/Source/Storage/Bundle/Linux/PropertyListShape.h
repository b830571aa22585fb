// How deep and how large a property list unfolds, told without unfolding it.
//
// A tree recurses once a level when it is freed, and a binary list may name one object in many places, each of which
// becomes a copy: a file of a hundred bytes can ask for more memory than there is. So the shape is looked at first.
#ifndef ORVANE_STORAGE_BUNDLE_LINUX_PROPERTY_LIST_SHAPE_H
#define ORVANE_STORAGE_BUNDLE_LINUX_PROPERTY_LIST_SHAPE_H

#include <cstdint>
#include <string>

namespace Quern {

// So many bytes of a binary list's texts and data, which are copied with their objects, weigh as much as a node.
constexpr uint64_t kPropertyListBytesPerNode = 64;

struct PropertyListLimits {
    uint32_t depth;  // dictionaries and lists inside each other, the outermost among them
    uint64_t nodes;  // objects and keys once unfolded, with the weight of their bytes
};

// False for what exceeds a limit, for a binary list whose tables lead outside its bytes, and for keys that are no texts
// or hold a zero: the parser ends the process at one. What holds says nothing about the rest of the syntax.
bool IsPropertyListWithin(const std::string& bytes, const PropertyListLimits& limits);

}  // namespace Quern

#endif
