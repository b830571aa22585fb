// The host's logger, got the way every plugin gets its own: from the service "LOG" of the plugin "OrvaneCore".
#ifndef ORVANE_TOOLS_HOST_GAME_LOGGER_H
#define ORVANE_TOOLS_HOST_GAME_LOGGER_H

#include <string>

#include "Orvane/ILogger.h"
#include "Orvane/PluginBase.h"

namespace OrvaneHost {

struct Options;

// Gives the logger its name. It takes no part in the lifecycle: it is never installed in the manager, so none of its
// stages is ever called, and it offers no service.
class GameModule final : public Orvane::Plugin::PluginBase {
public:
    explicit GameModule(std::string name) : _name(std::move(name)) {}
    const char* GetName() const override { return _name.c_str(); }
    const char* GetVersion() const override { return "1.0"; }
    void OnStartup(Orvane::Plugin::IServiceRegister*) override {}
    void OnPostStartup() override {}
    void OnPreShutdown() override {}
    void OnShutdown() override {}
    Orvane::Plugin::IPluginService* GetServiceByName(const char*) override { return nullptr; }

private:
    std::string _name;
};

// The host's own logger. The name and the options come from the command line. The logger itself belongs to the library,
// and lives as long.
class GameLogger {
public:
    // The options are borrowed.
    explicit GameLogger(const Options& options);

    // Finds the logger, sets its options and opens its store; once. False, and told, where there is no service yet:
    // before the launch. Main thread.
    bool Open();
    // Logs one text as it stands, with this file and function as its place. REQUIRES: Open gave true. Any thread.
    void Log(ALogPriority priority, const std::string& text);

private:
    const Options& _options;
    GameModule _module;                  // the library finds the logger by its name
    Orvane::ILogger* _logger = nullptr;  // owned by the service; null before Open
};

// Reads a level's word, whatever its case, or its number from 0 to 4. False for anything else.
bool ParseLevel(const std::string& text, ALogPriority& out);

}  // namespace OrvaneHost

#endif
