// An INI file that is enciphered at rest.
#ifndef ORVANE_STORAGE_BUNDLE_ENCRYPTED_INI_FILE_IMPL_H
#define ORVANE_STORAGE_BUNDLE_ENCRYPTED_INI_FILE_IMPL_H

#include "Storage/Bundle/CIniFileImpl.h"
#include "Storage/Bundle/EncryptedIniFormat.h"

namespace Quern {

// Every save has a new key, which the secure store keeps under the file's name. So a save that is cut short can leave a
// file that the stored key does not open: its bytes are then the text, in which reads find nothing.
// The base class's construction and destruction go the plain way: IniFile.h says what that means.
class EncryptedIniFileImpl final : public CIniFileImpl {
public:
    using CIniFileImpl::CIniFileImpl;

    // False, with a log line, at the first thing that is wrong with the file: EncryptedIniFormat.h.
    bool Load() override;
    bool Save() override;

private:
    // Leaves both as they are if no key can be made.
    void _MakeTeaKey(EncryptedIni::TeaKey& key, CurvePublicKey& publicKey);
    void _SaveTeaKey(const EncryptedIni::TeaKey& key);
    // Leaves the key as it is if none is kept, and the rest of it if what is kept is too short.
    void _GetTeaKey(EncryptedIni::TeaKey& key);
    // What the secure store knows the key by: the file's name.
    const char* KeyName() const;
};

}  // namespace Quern

#endif
