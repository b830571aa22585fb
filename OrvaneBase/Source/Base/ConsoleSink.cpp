#include "Base/ConsoleSink.h"

#include <cstdarg>
#include <cstdio>
#include <string>

namespace Quern {

void PlatformLog(const char* format, ...) {
    if (!format) return;
    char small[1024];  // most lines fit, and are written without the heap
    va_list arguments;
    va_start(arguments, format);
    va_list again;  // the first pass uses the arguments up
    va_copy(again, arguments);
    const int length = vsnprintf(small, sizeof small, format, arguments);
    va_end(arguments);
    if (length >= 0 && static_cast<size_t>(length) < sizeof small) {
        ConsoleSink::Current().Write(small, static_cast<size_t>(length));
    } else if (length >= 0) {
        std::string large(static_cast<size_t>(length) + 1, '\0');
        vsnprintf(large.data(), large.size(), format, again);
        ConsoleSink::Current().Write(large.data(), static_cast<size_t>(length));
    }
    va_end(again);
}

}  // namespace Quern
