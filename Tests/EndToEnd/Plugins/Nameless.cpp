// A library whose two plugins the host must refuse: one has no name, the other no version.
#include "Orvane/PluginBase.h"

namespace {

class Nameless : public Orvane::Plugin::PluginBase {
public:
    Nameless(const char* name, const char* version) : _name(name), _version(version) {}
    const char* GetName() const override { return _name; }
    const char* GetVersion() const override { return _version; }
    void OnStartup(Orvane::Plugin::IServiceRegister*) override { orvane_console_log("Nameless OnStartup"); }
    void OnPostStartup() override {}
    void OnPreShutdown() override {}
    void OnShutdown() override {}
    Orvane::Plugin::IPluginService* GetServiceByName(const char*) override { return nullptr; }

private:
    const char* _name;
    const char* _version;
};

__attribute__((constructor)) void Register() {
    static Nameless* plugins[] = {new Nameless(nullptr, "1.0"), new Nameless("Versionless", nullptr)};
    for (Nameless* plugin : plugins) {
        plugin->GetCachePluginManager();
        plugin->RegisterPlugin(plugin);
    }
}

}  // namespace
