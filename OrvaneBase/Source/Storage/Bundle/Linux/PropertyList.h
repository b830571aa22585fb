// Property lists, the home platform's format of manifests: XML and binary.
#ifndef ORVANE_STORAGE_BUNDLE_LINUX_PROPERTY_LIST_H
#define ORVANE_STORAGE_BUNDLE_LINUX_PROPERTY_LIST_H

#include <cstddef>
#include <string>

#include "Storage/Bundle/InfoValue.h"

namespace Quern {

// In bytes. More is refused; a manifest has some thousands.
constexpr size_t kLargestPropertyList = size_t{1} << 20;

// Reads the dictionary that a property list holds. On failure `out` is untouched and `why` says what is wrong with it.
// Any bytes are safe: what nests or unfolds beyond all reason is refused before it is parsed.
bool ParsePropertyList(const std::string& bytes, InfoValue& out, const char*& why);

}  // namespace Quern

#endif
