#include "ReportService.h"

#include "JsonEvent.h"

namespace Pell {

const char* ReportService::GetName() const {
    return kServiceName;
}

const char* ReportService::GetPluginName() const {
    return kPluginName;
}

Orvane::Plugin::IEvent* ReportService::CreateEvent(int srcID, const char* eventName) {
    return eventName ? new JsonEvent(srcID, eventName) : nullptr;
}

void ReportService::DestroyEvent(Orvane::Plugin::IEvent** event) {
    if (!event) return;
    delete *event;
    *event = nullptr;
}

}  // namespace Pell
