// A model for authors of plugins: everything that a sibling library does to take part, and nothing else.
//
// A plugin is a library of its own. It includes the headers of Include/Orvane, links liborvaneruntime.so and never
// liborvanecore.so: it finds the host through the run-time table, and calls it through virtual tables alone.
//
//     g++ -std=c++11 -fPIC -shared SamplePlugin.cpp -I<include folder> -lorvaneruntime -o libSample.so
//
// The process opens the library before the application's launch, with dlopen or as one of its own dependencies.
#include <stdlib.h>

#include "Orvane/ILogService.h"
#include "Orvane/PluginBase.h"
#include "Orvane/RunTime.h"

namespace Sample {

using Orvane::Plugin::ILogService;
using Orvane::Plugin::IPlugin;
using Orvane::Plugin::IPluginManager;
using Orvane::Plugin::IPluginService;
using Orvane::Plugin::IServiceRegister;
using Orvane::Plugin::kCoreModule;
using Orvane::Plugin::PluginBase;

class SamplePlugin final : public PluginBase {
public:
    // The name is the plugin's key in the host, its place in the order of the stages, the name of its logger and of its
    // log's folder. Keep it free of '_': the sweep of old log files parts a file's name from its hour there.
    const char* GetName() const override { return "Sample"; }
    const char* GetVersion() const override { return "1.0.3"; }

    // First stage, on the main thread: declare the services that GetServiceByName gives. This plugin has none. Other
    // plugins may not have had this stage yet, so nothing is looked up here.
    void OnStartup(IServiceRegister*) override { orvane_console_log("Sample OnStartup"); }

    // Second stage: every plugin has declared its services, so others can be looked up now.
    void OnPostStartup() override {
        orvane_console_log("Sample OnPostStartup");
        OpenLogger();
        Log(kLogInfo, __LINE__, __func__, "Sample is ready");
        Log(kLogDebug, __LINE__, __func__, "a debug line stays below the default threshold");
    }

    // The two stages of an orderly stop. A phone rarely grants one: whatever must not be lost is written when it
    // arises.
    void OnPreShutdown() override {
        orvane_console_log("Sample OnPreShutdown");
        Log(kLogInfo, __LINE__, __func__, "Sample finishes its work");
    }
    void OnShutdown() override {
        orvane_console_log("Sample OnShutdown");
        Log(kLogInfo, __LINE__, __func__, "Sample ends");
    }

    IPluginService* GetServiceByName(const char*) override { return nullptr; }

private:
    // Each step may give null, in a process without the host or with an older one; the plugin then runs without a log.
    void OpenLogger() {
        IPluginManager* manager = GetPluginManager();
        IPlugin* core = manager ? manager->GetPluginByName(kCoreModule) : nullptr;
        IPluginService* service = core ? core->GetServiceByName("LOG") : nullptr;
        if (!service) return;
        _logger = static_cast<ILogService*>(service)->GetLogger(this);

        // Options come before Init; the module's configuration, where there is one, goes before both.
        const char* mode = getenv("SAMPLE_LOG_MODE");
        _logger->SetOption("LogMode", mode ? atoi(mode) : 2);
        _logger->SetOption("LogConsoleOutput", 0);
        _logger->Init();
    }

    void Log(ALogPriority priority, unsigned line, const char* function, const char* text) {
        if (_logger) _logger->Log(priority, __FILE__, line, function, nullptr, text);
    }

    Orvane::ILogger* _logger = nullptr;  // owned by the service
};

// Runs while the library loads, which is early enough to take part in the launch. The host keeps the pointer and never
// deletes the plugin, so the plugin is never destroyed; the library is linked with -z nodelete for the same reason.
__attribute__((constructor)) static void Register() {
    static SamplePlugin* plugin = new SamplePlugin;
    plugin->GetCachePluginManager();
    plugin->RegisterPlugin(plugin);
}

}  // namespace Sample
