// A login plugin "RAVEL" that offers no service: whoever asks it for the account finds none.
#include "Orvane/PluginBase.h"

namespace {

class Accountless : public Orvane::Plugin::PluginBase {
public:
    const char* GetName() const override { return "RAVEL"; }
    const char* GetVersion() const override { return "0.1"; }
    void OnStartup(Orvane::Plugin::IServiceRegister*) override {}
    void OnPostStartup() override {}
    void OnPreShutdown() override {}
    void OnShutdown() override {}
    Orvane::Plugin::IPluginService* GetServiceByName(const char*) override { return nullptr; }
};

__attribute__((constructor)) void Register() {
    static Accountless* plugin = new Accountless;
    plugin->GetCachePluginManager();
    plugin->RegisterPlugin(plugin);
}

}  // namespace
