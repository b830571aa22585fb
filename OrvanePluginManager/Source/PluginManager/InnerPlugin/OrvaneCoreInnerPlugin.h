// The plugin by which the library enters its own services into the host, under the name "OrvaneCore", and whose stages
// start the library's background work: nothing else does.
//
// The stages run on the main thread, inside the host's walks. What they start runs on the shared queue, in whatever
// order the queue gives. Every failure is a line of the log, and the start goes on.
#ifndef ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_ORVANE_CORE_INNER_PLUGIN_H
#define ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_ORVANE_CORE_INNER_PLUGIN_H

#include "Orvane/PluginBase.h"
#include "PluginManager/InnerPlugin/Singleton.h"
#include "System/Operation/OperationTargetBase.h"

namespace Orvane::Plugin {

// Never destroyed, so an operation of its own always finds it. The stages and what they queue are in
// OrvaneCoreInnerPluginStages.cpp, the rest in OrvaneCoreInnerPlugin.cpp.
class OrvaneCoreInnerPlugin final : public Quern::OperationTargetBase,
                                    public Singleton<OrvaneCoreInnerPlugin>,
                                    public PluginBase {
public:
    const char* GetName() const override;
    const char* GetVersion() const override;

    // Declares the services, checks that the game is configured, and queues onStartYarrowClient. A game without an id
    // is told so, on the main run loop's next turn, and starts all the same.
    void OnStartup(IServiceRegister* services) override;
    // Settles who the user is, queues onStartConfigure, and leaves the library's version for the crash-report SDK.
    void OnPostStartup() override;
    // These two stop nothing.
    void OnPreShutdown() override;
    void OnShutdown() override;

    // Any thread, once start-up is over. Names are compared byte by byte.
    IPluginService* GetServiceByName(const char* serviceName) override;

    // The queued starts. A null operation makes them start nothing.

    // Sends a span that tells of this launch, with every plugin's version, if tracing is on.
    void onStartYarrowClient(Quern::ObjectOperation* operation, void* data);
    // Starts the client of the configuration server, and by the setting "TaskSystemEnable" the task system.
    void onStartConfigure(Quern::ObjectOperation* operation, void* data);
};

}  // namespace Orvane::Plugin

#endif
