// An INI file that is enciphered at rest.
#ifndef ORVANE_STORAGE_BUNDLE_ENCRYPTED_INI_FILE_IMPL_H
#define ORVANE_STORAGE_BUNDLE_ENCRYPTED_INI_FILE_IMPL_H

#include "Storage/Bundle/CIniFileImpl.h"
#include "Storage/Bundle/EncryptedIniFormat.h"

namespace Quern {

class FileReplacement;

// Every save has a new key, which the secure store keeps under the file's name. It moves there when the new file lies
// whole beside the old one, and the new file takes the name right after. A save that was cut short between the two is
// finished by the next Load or Save; one whose key the secure store does not take leaves the old file and its key.
// A file that the stored key does not open is taken as text, in which reads find nothing.
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
    // Puts a new file and its key in the place of the old ones, both or neither. Whether they are there now.
    bool Replace(const std::string& bytes, const EncryptedIni::TeaKey& key);
    // Reads the new file of a save that was cut short right behind its key, and puts it in place. False if there is
    // none.
    bool TakeInterruptedSave(IniText& text);
    // The same for a save that comes next. False if there is one that cannot be put in place.
    bool FinishInterruptedSave(FileReplacement& file);
    // Deciphers a file, or its body, with the key that is kept. On false the text stays.
    bool OpenWhole(std::string_view bytes, IniText& text);
    bool OpenBody(std::string_view body, IniText& text);
    bool IsKept(const EncryptedIni::TeaKey& key);
    // What the secure store knows the key by: the file's name.
    const char* KeyName() const;
};

}  // namespace Quern

#endif
