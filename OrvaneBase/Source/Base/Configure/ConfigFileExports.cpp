// Files of settings as the game's script layer handles them.
#include "Base/Configure/ConfigFile.h"
#include "Orvane/OrvaneCore.h"

orvane_config_file* OrvaneCore_GetDefaultHandler() {
    return Orvane::ConfigFile::GetDefaultInstance();
}

orvane_config_file* OrvaneCore_NewConfigFile(const char* name) {
    return new Orvane::ConfigFile(name);
}

void OrvaneCore_DeleteConfigFile(orvane_config_file** file) {
    Orvane::DeleteOrvaneConfigFile(file);
}
