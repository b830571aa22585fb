// The service "CONFIGFILE": files of settings for plugins.
#ifndef ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_CONFIG_FILE_SERVICE_H
#define ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_CONFIG_FILE_SERVICE_H

#include <atomic>

#include "Orvane/IConfigFile.h"

namespace Orvane {

// A caller owns the files that it has made, and gives them back by DeleteConfigFile; the default one belongs to the
// library. Two files of one name share one store, which goes with the first that is deleted. Any thread.
class ConfigFileSerivce final : public IConfigFileService {
public:
    // Made at the first call, by whichever thread.
    static ConfigFileSerivce* GetInstance();

    const char* GetName() const override;        // "CONFIGFILE"
    const char* GetPluginName() const override;  // "OrvaneCore"
    // A new object over NAME.config in the cache folder; null and "Orvane" mean the library's own file. Never null.
    IConfigFile* NewConfigFile(const char* name) override;
    // Saves, deletes and clears the caller's pointer. Of the default file only the pointer goes.
    void DeleteConfigFile(IConfigFile** file) override;
    // The one object over the library's own file, "Orvane.config"; it lives as long as the process.
    IConfigFile* GetDefaultConfigFile() override;

private:
    static std::atomic<ConfigFileSerivce*> s_pInstance;
};

}  // namespace Orvane

#endif
