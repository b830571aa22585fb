// How deep and how large a property list unfolds, told without unfolding it.
//
// The parser recurses once a level, and a binary list may name one object in many places, each of which becomes a copy:
// a file of a hundred bytes can ask for more memory than there is. So the shape is looked at first.
#ifndef ORVANE_STORAGE_BUNDLE_LINUX_PROPERTY_LIST_SHAPE_H
#define ORVANE_STORAGE_BUNDLE_LINUX_PROPERTY_LIST_SHAPE_H

#include <cstdint>
#include <string>

namespace Quern {

struct PropertyListLimits {
    uint32_t depth;  // dictionaries and lists inside each other, the outermost among them
    uint64_t nodes;  // objects and keys once unfolded
};

// False for what exceeds a limit, for a binary list whose tables lead outside its bytes, and for keys that are no texts
// or hold a zero: the parser ends the process at one. What holds says nothing about the rest of the syntax.
bool IsPropertyListWithin(const std::string& bytes, const PropertyListLimits& limits);

}  // namespace Quern

#endif
