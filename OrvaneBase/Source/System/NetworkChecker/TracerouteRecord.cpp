#include "System/NetworkChecker/TracerouteRecord.h"

#include <cstdio>

namespace Quern {

std::string TracerouteRecord::description() const {
    std::string text = std::to_string(ttl) + "\t" + ip.value_or(" ") + "\t";
    for (const std::optional<double>& duration : recvDurations) {
        char field[352] = "*\t";  // the longest double with two decimals has 312 characters
        if (duration) snprintf(field, sizeof field, "%.2f ms\t", *duration * 1000);
        text += field;
    }
    return text;
}

}  // namespace Quern
