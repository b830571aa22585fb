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

    const char* GetName() const override;
    const char* GetPluginName() const override;
    IConfigFile* NewConfigFile(const char* name) override;
    void DeleteConfigFile(IConfigFile** file) override;
    IConfigFile* GetDefaultConfigFile() override;

private:
    static std::atomic<ConfigFileSerivce*> s_pInstance;
};

}  // namespace Orvane

#endif
