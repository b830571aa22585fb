// The data plugin "PELL": offers the service "REPORT", through which the library and other plugins send events.
#include <string.h>

#include <chrono>

#include "Orvane/PluginBase.h"
#include "ReportService.h"

namespace Pell {

// The take-down runs on the main thread: what a receiver does not take in that time is lost, if the process ends.
constexpr std::chrono::milliseconds kFlushDeadline(2000);

class PellPlugin final : public Orvane::Plugin::PluginBase {
public:
    const char* GetName() const override { return kPluginName; }
    const char* GetVersion() const override { return "3.2.0.418"; }
    void OnStartup(Orvane::Plugin::IServiceRegister* services) override {
        orvane_console_log("PELL OnStartup");
        if (services) services->Register(kServiceName);
    }
    void OnPostStartup() override { orvane_console_log("PELL OnPostStartup"); }
    void OnPreShutdown() override { orvane_console_log("PELL OnPreShutdown"); }
    void OnShutdown() override {
        orvane_console_log("PELL OnShutdown");
        _report.Flush(kFlushDeadline);
    }
    Orvane::Plugin::IPluginService* GetServiceByName(const char* name) override {
        return name && strcmp(name, kServiceName) == 0 ? &_report : nullptr;
    }

private:
    ReportService _report;
};

// Runs while the library loads. The plugin is never destroyed: the host keeps the pointer.
__attribute__((constructor)) static void Register() {
    static PellPlugin* plugin;
    plugin = new PellPlugin;
    plugin->GetCachePluginManager();
    plugin->RegisterPlugin(plugin);
}

}  // namespace Pell
