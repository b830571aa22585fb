// The comparison is that of the home platform's own code, so versions of other lengths come out as they do there.
#include "Storage/Log/DorselVersion.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace Quern {
namespace {

constexpr char kOldestDorsel[] = "4.2.027.27094";
constexpr size_t kVersionFieldCapacity = 32;

int Sign(double difference) {
    return difference < 0 ? -1 : difference > 0 ? 1 : 0;
}

// Takes the digits up to the next dot off the front of a version. False, and nothing taken, if there is no dot.
bool TakeField(const char*& version, int& value) {
    const char* dot = strchr(version, '.');
    if (!dot) return false;
    char field[kVersionFieldCapacity] = {};
    memcpy(field, version, std::min(static_cast<size_t>(dot - version), sizeof field - 1));
    value = atoi(field);
    version = dot + 1;
    return true;
}

}  // namespace

int compareVersion(const char* version) {
    const char* oldest = kOldestDorsel;
    while (strchr(version, '.') && strchr(oldest, '.')) {
        int field = 0, oldestField = 0;
        TakeField(version, field);
        TakeField(oldest, oldestField);
        if (field != oldestField) return field < oldestField ? -1 : 1;
    }
    return Sign(atof(version) - atof(oldest));
}

}  // namespace Quern
