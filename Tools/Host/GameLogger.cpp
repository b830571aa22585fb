#include "GameLogger.h"

#include <strings.h>

#include "Options.h"
#include "Orvane/ILogService.h"
#include "Orvane/RunTime.h"

namespace OrvaneHost {

using namespace Orvane::Plugin;

GameLogger::GameLogger(const Options& options) : _options(options), _module(options.module) {}

bool GameLogger::Open() {
    if (_logger) return true;
    _module.GetCachePluginManager();
    IPluginManager* manager = _module.GetPluginManager();
    IPlugin* core = manager ? manager->GetPluginByName(kCoreModule) : nullptr;
    auto* service = core ? static_cast<ILogService*>(core->GetServiceByName("LOG")) : nullptr;
    if (!service) {
        orvane_console_log("orvane-host: no log service yet; it comes with the launch");
        return false;
    }
    _logger = service->GetLogger(&_module);
    // The options count when Init opens the store. With the lowest level no line of a script is filtered.
    _logger->SetOption("LogMode", _options.logMode);
    _logger->SetOption("LogConsoleOutput", _options.consoleOutput);
    _logger->SetLogLevel(kLogDebug);
    _logger->Init();
    return true;
}

void GameLogger::Log(ALogPriority priority, const std::string& text) {
    _logger->Log(priority, __FILE__, __LINE__, __func__, nullptr, text.c_str());
}

bool ParseLevel(const std::string& text, ALogPriority& out) {
    constexpr const char* kWords[] = {"debug", "info", "warning", "event", "error"};
    uint64_t number = 0;
    if (ParseNumber(text, kLogDebug, kLogError, number)) {
        out = static_cast<ALogPriority>(number);
        return true;
    }
    for (int level = kLogDebug; level <= kLogError; ++level) {
        if (strcasecmp(text.c_str(), kWords[level]) != 0) continue;
        out = static_cast<ALogPriority>(level);
        return true;
    }
    return false;
}

}  // namespace OrvaneHost
