/// \file ICoreReportService.h
/// The service "COREREPORT" of the plugin "OrvaneCore". Slot order is a binary contract.
#ifndef ORVANE_I_CORE_REPORT_SERVICE_H
#define ORVANE_I_CORE_REPORT_SERVICE_H

#include "Orvane/IEvent.h"
#include "Orvane/IPluginService.h"
#include "Orvane/PluginBase.h"

namespace Orvane {
namespace Plugin {

/// Makes events of the data plugin, subject to the data-type rule, with the account's fields on them. Any thread, once
/// the launch is over: plugins are looked up in a registry that is not locked and rests from then on.
class ICoreReportService : public IPluginService {
public:
    /// \param dataType bit set of data types. Bit value 2 always passes; the others pass when the setting
    ///                 "ReportDataType" has a bit in common with them.
    /// \param srcID    the source id that the data plugin is given
    /// \return null when the rule refuses the event, the name is null, or there is no data plugin. The caller owns the
    ///         event and gives it back through DestroyEvent.
    virtual IEvent* CreateEvent(int dataType, int srcID, const char* eventName) = 0;
    /// Gives an event back to the data plugin, which clears the pointer.
    virtual void DestroyEvent(IEvent** event) = 0;
};

/// Finds the service through the plugin's cached manager.
/// \return null at any null on the way
inline ICoreReportService* sg_get_orvanecore_report_service(PluginBase* plugin) {
    IPluginManager* manager = plugin ? plugin->GetPluginManager() : nullptr;
    IPlugin* core = manager ? manager->GetPluginByName(kCoreModule) : nullptr;
    return core ? static_cast<ICoreReportService*>(core->GetServiceByName("COREREPORT")) : nullptr;
}

/// ICoreReportService::CreateEvent for a plugin that has cached its manager. Null without the service.
inline IEvent* sg_create_orvanecore_report_event(PluginBase* plugin, int dataType, int srcID, const char* eventName) {
    ICoreReportService* service = sg_get_orvanecore_report_service(plugin);
    return service ? service->CreateEvent(dataType, srcID, eventName) : nullptr;
}

/// ICoreReportService::DestroyEvent for a plugin that has cached its manager. Does nothing without the service.
inline void sg_destroy_orvanecore_report_event(PluginBase* plugin, IEvent** event) {
    ICoreReportService* service = sg_get_orvanecore_report_service(plugin);
    if (service) service->DestroyEvent(event);
}

}  // namespace Plugin
}  // namespace Orvane

#endif
