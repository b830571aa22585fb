#include "Storage/Bundle/IniFile.h"

#include "Storage/Bundle/CIniFileImpl.h"
#include "Storage/Bundle/EncryptedIniFileImpl.h"

namespace Quern {

IniFile* IniFile::CreateIniFile(const char* path) {
    return new CIniFileImpl(path);
}

IniFile* IniFile::CreateEncrptedFile(const char* path) {
    return new EncryptedIniFileImpl(path);
}

}  // namespace Quern
