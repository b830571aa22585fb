#include "System/Network/SystemVersion.h"

#include <cctype>
#include <charconv>
#include <cstring>

#include "System/System/DeviceFacts.h"

namespace Quern {

float ParseSystemVersion(const char* text) {
    if (!text) return 0;
    while (isspace(static_cast<unsigned char>(*text)))
        ++text;
    float version = 0;
    // A digit must come first: from_chars takes "inf" and "nan" as well.
    const bool isNumber = isdigit(static_cast<unsigned char>(*text)) || *text == '.';
    if (isNumber) std::from_chars(text, text + strlen(text), version, std::chars_format::fixed);
    return version;
}

float SystemVersion() {
    return ParseSystemVersion(DeviceFacts::Current().SystemVersion().c_str());
}

}  // namespace Quern
