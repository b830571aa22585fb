#include "Base/Assert.h"

#include <cstdlib>

#include "Orvane/RunTime.h"

namespace Quern {

void AssertionFailed(const char* expression, const char* file, int line) {
    // The run time's console and no seam: the process is in a state in which as little as possible should run.
    orvane_console_log("Assertion failed: (%s), file %s, line %d", expression, file, line);
    abort();
}

}  // namespace Quern
