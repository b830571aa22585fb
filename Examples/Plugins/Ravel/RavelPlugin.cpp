// The login plugin "RAVEL": offers the service "ACCOUNT", which says who has logged in.
#include <string.h>

#include "AccountService.h"
#include "LifecycleObserver.h"
#include "Orvane/PluginBase.h"

namespace Ravel {

class RavelPlugin final : public Orvane::Plugin::PluginBase {
public:
    const char* GetName() const override { return kPluginName; }
    const char* GetVersion() const override { return "2.7.1"; }
    void OnStartup(Orvane::Plugin::IServiceRegister* services) override {
        orvane_console_log("RAVEL OnStartup");
        if (services) services->Register(kServiceName);
    }
    void OnPostStartup() override { orvane_console_log("RAVEL OnPostStartup"); }
    void OnPreShutdown() override { orvane_console_log("RAVEL OnPreShutdown"); }
    void OnShutdown() override { orvane_console_log("RAVEL OnShutdown"); }
    Orvane::Plugin::IPluginService* GetServiceByName(const char* name) override {
        return name && strcmp(name, kServiceName) == 0 ? &_account : nullptr;
    }

private:
    AccountService _account;
};

// Runs while the library loads. The plugin is never destroyed: the host keeps the pointer.
__attribute__((constructor)) static void Register() {
    static RavelPlugin* plugin = new RavelPlugin;
    plugin->GetCachePluginManager();
    plugin->RegisterPlugin(plugin);
    ObserveLifecycle();
}

}  // namespace Ravel
