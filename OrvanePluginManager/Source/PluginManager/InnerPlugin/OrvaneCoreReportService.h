// The service "COREREPORT": makes events of the data plugin, subject to the data-type rule and with the account's
// fields on them.
#ifndef ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_ORVANE_CORE_REPORT_SERVICE_H
#define ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_ORVANE_CORE_REPORT_SERVICE_H

#include <atomic>

#include "Orvane/ICoreReportService.h"

namespace Orvane::Plugin {

class OrvaneCoreReportSerivce final : public ICoreReportService {
public:
    // Made at the first call, by whichever thread.
    static OrvaneCoreReportSerivce* GetInstance();
    static void ReleaseInstance();

    const char* GetName() const override;
    const char* GetPluginName() const override;
    IEvent* CreateEvent(int dataType, int srcID, const char* eventName) override;
    void DestroyEvent(IEvent** event) override;

private:
    OrvaneCoreReportSerivce() = default;
    // The setting "ReportDataType", read once; a setting of -1 is read again each time.
    int ReportDataType();

    static std::atomic<OrvaneCoreReportSerivce*> s_pInstance;

    std::atomic<int> _reportDataType{-1};
};

}  // namespace Orvane::Plugin

#endif
