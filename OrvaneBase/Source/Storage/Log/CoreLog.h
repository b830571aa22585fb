// The library's own logger: its start, and the settings that reach it.
#ifndef ORVANE_STORAGE_LOG_CORE_LOG_H
#define ORVANE_STORAGE_LOG_CORE_LOG_H

#include "Orvane/ILogger.h"

namespace Quern {

// Makes and starts the logger of the module "OrvaneCore", unless it exists. Main thread.
void OrvaneLogInit();
// Sets that logger's callback; lost before it exists. Any thread.
void SetQuernLogCallback(void (*callback)(ALogPriority, const char*));
// Sets that logger's "LogConsoleOutput", if it exists. Any thread.
void SetConsoleOutput(bool isOn);

}  // namespace Quern

#endif
