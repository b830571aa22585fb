// The one module whose logger goes by the age of its plugin.
#ifndef ORVANE_STORAGE_LOG_DORSEL_VERSION_H
#define ORVANE_STORAGE_LOG_DORSEL_VERSION_H

namespace Quern {

inline constexpr char kDorselModule[] = "Dorsel";

// The sign of the comparison of a version with the oldest one that the module may have: field by field as numbers as
// long as both have a dot, then the rests as decimal fractions. Any thread.
int compareVersion(const char* version);

}  // namespace Quern

#endif
