// Fills and sends one event through the service "COREREPORT". A stack object of one thread.
#ifndef ORVANE_BASE_REPORT_HANDLER_REPORT_HANDLER_H
#define ORVANE_BASE_REPORT_HANDLER_REPORT_HANDLER_H

#include <string>

#include "Orvane/IEvent.h"

namespace Quern {

// Reporting never fails towards its caller: without an event, because the setting "PellReportAvailable" is 0 or because
// none could be made, every operation does nothing.
class ReportHandler {
public:
    // dataType, srcId: as ICoreReportService::CreateEvent takes them. A null name counts as an empty one.
    ReportHandler(const char* eventName, int dataType, int srcId);
    ~ReportHandler();
    ReportHandler(const ReportHandler&) = delete;
    ReportHandler& operator=(const ReportHandler&) = delete;

    // Null texts count as empty ones.
    void Add(const char* key, const char* value);
    void Add(int key, int value);
    void Add(int key, const char* value);
    // Sends the event; may be called more than once.
    void Report();

private:
    bool IsUsable() const { return _available && _event; }
    // Both find the report service anew. False where there is no event to make or to give back.
    bool createEvent(const char* name, int dataType, int srcId);
    bool destroyEvent(Orvane::Plugin::IEvent** event);

    bool _available;
    int _srcId;
    int _dataType;
    std::string _eventName;
    Orvane::Plugin::IEvent* _event;
};

}  // namespace Quern

#endif
