#include "PluginManager/InnerPlugin/ConfigFileService.h"

#include "Base/Configure/ConfigFile.h"
#include "Base/CoreModule.h"
#include "Base/MakeOnce.h"

namespace Orvane {

std::atomic<ConfigFileSerivce*> ConfigFileSerivce::s_pInstance{nullptr};

ConfigFileSerivce* ConfigFileSerivce::GetInstance() {
    return Quern::MakeOnce(s_pInstance, [] { return new ConfigFileSerivce; });
}

const char* ConfigFileSerivce::GetName() const {
    return "CONFIGFILE";
}

const char* ConfigFileSerivce::GetPluginName() const {
    return Quern::kCoreModule;
}

IConfigFile* ConfigFileSerivce::NewConfigFile(const char* name) {
    return new ConfigFile(name);
}

void ConfigFileSerivce::DeleteConfigFile(IConfigFile** file) {
    DeleteOrvaneConfigFile(file);
}

IConfigFile* ConfigFileSerivce::GetDefaultConfigFile() {
    return ConfigFile::GetDefaultInstance();
}

}  // namespace Orvane
