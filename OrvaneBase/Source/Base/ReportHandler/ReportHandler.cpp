#include "Base/ReportHandler/ReportHandler.h"

#include <cstring>

#include "Base/Configure/Configure.h"
#include "Base/CoreModule.h"
#include "Base/XLog.h"
#include "Orvane/ICoreReportService.h"
#include "PluginManager/InnerPlugin/OrvaneCoreInnerPlugin.h"  // upward: events come from the core plugin's service

namespace Quern {
namespace {

Orvane::Plugin::PluginBase* CorePlugin() {
    return Orvane::Plugin::Singleton<Orvane::Plugin::OrvaneCoreInnerPlugin>::GetInstance();
}

}  // namespace

ReportHandler::ReportHandler(const char* eventName, int dataType, int srcId)
    : _available(true), _srcId(srcId), _dataType(dataType), _event(nullptr) {
    if (Orvane::Configure::GetInstance()->GetInt(kCoreModule, "PellReportAvailable", 1) == 0) {
        _available = false;
        return;
    }
    if (eventName) _eventName = eventName;
    if (!createEvent(_eventName.c_str(), _dataType, _srcId)) ORVANE_LOG_WARNING("createEvent failed");
}

ReportHandler::~ReportHandler() {
    if (!IsUsable()) return;
    destroyEvent(&_event);
    _event = nullptr;
}

void ReportHandler::Add(const char* key, const char* value) {
    if (!IsUsable()) return;
    if (!key) key = "";
    if (!value) value = "";
    _event->Add(key, value, static_cast<int>(strlen(value)));
}

void ReportHandler::Add(int key, int value) {
    if (IsUsable()) _event->Add(key, value);
}

void ReportHandler::Add(int key, const char* value) {
    if (!IsUsable()) return;
    if (!value) value = "";
    _event->Add(key, value, static_cast<int>(strlen(value)));
}

void ReportHandler::Report() {
    if (IsUsable()) _event->Report();
}

bool ReportHandler::createEvent(const char* name, int dataType, int srcId) {
    if (!_available) return false;
    if (!name) {
        ORVANE_LOG_ERROR("eventName is null");
        return false;
    }
    _event = Orvane::Plugin::sg_create_orvanecore_report_event(CorePlugin(), dataType, srcId, name);
    if (!_event) {
        ORVANE_LOG_WARNING("event is null");
        return false;
    }
    return true;
}

bool ReportHandler::destroyEvent(Orvane::Plugin::IEvent** ppEvent) {
    if (!_available) return false;
    if (!ppEvent || !*ppEvent) {
        ORVANE_LOG_WARNING("!ppEvent || *ppEvent == true");
        return false;
    }
    Orvane::Plugin::sg_destroy_orvanecore_report_event(CorePlugin(), ppEvent);
    return true;
}

}  // namespace Quern
