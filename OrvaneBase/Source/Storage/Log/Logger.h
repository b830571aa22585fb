// The declarations that the application's launch needs; see the rest of this folder for the log itself.
#ifndef ORVANE_STORAGE_LOG_LOGGER_H
#define ORVANE_STORAGE_LOG_LOGGER_H

namespace Quern {

// Makes and starts the library's own logger, "OrvaneCore", unless it exists. Main thread.
void OrvaneLogInit();

class Logger {
public:
    // Starts the sweep of old log files in a thread of its own. Main thread.
    static void XLogInit();
};

}  // namespace Quern

#endif
