// The stage log: one line that tells where in a scripted procedure the game is, for machines to read.
#ifndef ORVANE_STORAGE_LOG_STAGE_LOG_H
#define ORVANE_STORAGE_LOG_STAGE_LOG_H

#include "Base/XLog.h"
#include "Orvane/ILogger.h"

namespace Quern {

// Formats the stage text into `out`, which has room for kLogLineCapacity bytes.
void IntelliDevLogFormate(char* out, const char* module, const char* session, IntelliDevStage stage,
                          IntelliDevStatus status, int errCode, int errCode2, const char* errorMsg,
                          const char* userInfo, const char* resv, const char* text);

// Formats the text and logs the stage through the library's own logger; before that has started, prints it on the
// console. None of the texts may be null.
void XLogDetail(ALogPriority level, const char* file, unsigned int line, const char* function, const char* module,
                const char* session, IntelliDevStage stage, IntelliDevStatus status, int errCode, int errCode2,
                const char* errorMsg, const char* userInfo, const char* resv, const char* format, ...)
    __attribute__((format(printf, 14, 15)));

}  // namespace Quern

#endif
