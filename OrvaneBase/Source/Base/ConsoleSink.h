// The platform's console, where texts go that cannot or need not enter a log.
#ifndef ORVANE_BASE_CONSOLE_SINK_H
#define ORVANE_BASE_CONSOLE_SINK_H

#include <cstddef>

#include "Base/Seam.h"

namespace Quern {

// Any thread. Must not log.
class ConsoleSink : public Seam<ConsoleSink> {
public:
    // Writes one text as one line. A newline at its end is not doubled.
    virtual void Write(const char* text, size_t length) = 0;
};

template <>
std::shared_ptr<ConsoleSink> Seam<ConsoleSink>::MakeBuiltIn();

// The platform log line: formats as printf does, without limit of length, and writes to the console. Enters no log.
void PlatformLog(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace Quern

#endif
