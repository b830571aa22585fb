#include "Storage/Log/StageLog.h"

#include <cstdarg>
#include <cstdio>
#include <initializer_list>

#include "Base/Configure/OrvaneCoreRemoteConfig.h"
#include "Storage/Log/Logger.h"

namespace Quern {
namespace {

constexpr char kStageTag[] = "Orvane IntelliDevLog ";
constexpr char kNullParameter[] = "Error, Parameter is NULL.";

bool AnyNull(std::initializer_list<const char*> texts) {
    for (const char* text : texts)
        if (!text) return true;
    return false;
}

}  // namespace

void IntelliDevLogFormate(char* out, const char* module, const char* session, IntelliDevStage stage,
                          IntelliDevStatus status, int errCode, int errCode2, const char* errorMsg,
                          const char* userInfo, const char* resv, const char* text) {
    snprintf(out, kLogLineCapacity,
             "|IntelliDevLog|  Module:%s Session:%s Stage:%d Status:%d ErrCode:%d ErrCode2:%d ErrorMsg:%s UserInfo:%s "
             "Resv:%s %s",
             module, session, static_cast<int>(stage), static_cast<int>(status), errCode, errCode2, errorMsg, userInfo,
             resv, text);
}

void Logger::XLogDetail(ALogPriority priority, const char* file, unsigned int line, const char* function,
                        const char* module, const char* session, IntelliDevStage stage, IntelliDevStatus status,
                        int errCode, int errCode2, const char* errorMsg, const char* userInfo, const char* resv,
                        const char* text) {
    if (AnyNull({module, session, errorMsg, userInfo, resv, text})) {
        PrintLogToConsole(kLogError, _moduleName.c_str(), kNullParameter);
        return;
    }
    if (Orvane::OrvaneCoreRemoteConfig::GetInstance()->GetInt("OrvaneIntelliDevLogMode", -1) != 1) return;
    char formatted[kLogLineCapacity];
    IntelliDevLogFormate(formatted, module, session, stage, status, errCode, errCode2, errorMsg, userInfo, resv, text);
    Log(priority, file, line, function, "", formatted);
}

void XLogDetail(ALogPriority level, const char* file, unsigned int line, const char* function, const char* module,
                const char* session, IntelliDevStage stage, IntelliDevStatus status, int errCode, int errCode2,
                const char* errorMsg, const char* userInfo, const char* resv, const char* format, ...) {
    if (AnyNull({module, session, errorMsg, userInfo, resv, format})) {
        PrintLogToConsole(kLogError, kStageTag, kNullParameter);
        return;
    }
    char text[kLogLineCapacity];
    va_list arguments;
    va_start(arguments, format);
    const int length = vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    if (length < 0) text[0] = '\0';

    if (IsCoreLoggerStarted()) {
        CoreLogger()->XLogDetail(level, file, line, function, module, session, stage, status, errCode, errCode2,
                                 errorMsg, userInfo, resv, text);
        return;
    }
    // Only the logger asks the setting "OrvaneIntelliDevLogMode": here the line is printed whatever that says.
    char formatted[kLogLineCapacity];
    IntelliDevLogFormate(formatted, module, session, stage, status, errCode, errCode2, errorMsg, userInfo, resv, text);
    PrintLogToConsole(level, kStageTag, formatted);
}

}  // namespace Quern
