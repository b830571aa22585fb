// The first caller makes the logger, on the main thread, so nothing is locked.
#include "Storage/Log/CoreLog.h"

#include "Base/CoreModule.h"
#include "Base/XLog.h"
#include "Orvane/OrvaneCore.h"
#include "Storage/Log/Logger.h"

namespace Quern {
void OrvaneLogInit() {
    if (CoreLogger()) return;
    auto* core = new Logger(kCoreModule);  // never destroyed: any thread may log until the process ends
    SetCoreLogger(core);
    Orvane::Configure::GetInstance()->AddObserver(kCoreModule, core);
    core->SetLogLevel(GetQuernLogLevel());
    core->Init();
    StartCoreLogger(&core->Threshold());
}

void SetQuernLogCallback(void (*callback)(ALogPriority, const char*)) {
    if (Orvane::ILogger* core = CoreLogger()) core->SetCallback(callback);
}

void SetConsoleOutput(bool isOn) {
    if (Orvane::ILogger* core = CoreLogger()) core->SetOption("LogConsoleOutput", isOn ? 1 : 0);
}

}  // namespace Quern

void OrvaneCore_SetQuernLogCallback(void (*callback)(ALogPriority, const char*)) {
    Quern::SetQuernLogCallback(callback);
}
