// The service "COREREPORT": makes events of the data plugin, subject to the data-type rule and with the account's
// fields on them.
#ifndef ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_ORVANE_CORE_REPORT_SERVICE_H
#define ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_ORVANE_CORE_REPORT_SERVICE_H

#include <atomic>

#include "Orvane/ICoreReportService.h"

namespace Orvane::Plugin {

// An event belongs to the data plugin. The caller fills it, reports it, and gives it back by DestroyEvent, whether or
// not it was reported. Every call looks the data plugin up anew, since siblings come and go. Any thread.
class OrvaneCoreReportSerivce final : public ICoreReportService {
public:
    // Made at the first call, by whichever thread.
    static OrvaneCoreReportSerivce* GetInstance();
    // No thread may be in one of its operations. Events stay valid: they are the data plugin's.
    static void ReleaseInstance();

    const char* GetName() const override;        // "COREREPORT"
    const char* GetPluginName() const override;  // "OrvaneCore"
    // `dataType` is a bit set: an event with the bit of value 2 always passes, another one if the setting
    // "ReportDataType" shares a bit with it. Null for an event that does not pass, for a null name, and if the data
    // plugin is missing or makes none. Without a login the event only lacks the account's fields.
    IEvent* CreateEvent(int dataType, int srcID, const char* eventName) override;
    // The data plugin clears the caller's pointer. Without that plugin nothing happens, and the pointer stays.
    void DestroyEvent(IEvent** event) override;

private:
    OrvaneCoreReportSerivce() = default;
    // The setting "ReportDataType", read once; a setting of -1 is read again each time.
    int ReportDataType();

    static std::atomic<OrvaneCoreReportSerivce*> s_pInstance;

    std::atomic<int> _reportDataType{-1};
};

// The data plugin's service "REPORT"; null if the plugin or the service is missing. The log is then told which one: a
// missing plugin by the given line, a missing service by a line of its own. With a null line this says nothing.
IReportService* FindReportService(const char* missingPluginLine = nullptr);

}  // namespace Orvane::Plugin

#endif
