#include "Storage/Bundle/EncryptedIniFileImpl.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <utility>

#include "Base/XLog.h"
#include "Serializer/Codec/Base64.h"
#include "Serializer/Codec/PeerKey.h"
#include "Storage/Bundle/SecurityStore.h"
#include "Storage/File/FileReplacement.h"
#include "Storage/File/WholeFile.h"

namespace Quern {
namespace {

using EncryptedIni::Fault;

constexpr int kLooks = 3;

#if __has_attribute(zero_call_used_regs)
#define ORVANE_LEAVES_NO_REGISTERS __attribute__((zero_call_used_regs("all")))
#else
#define ORVANE_LEAVES_NO_REGISTERS
#endif

// Ciphers and codecs copy the key to the stack: clears what the calls of the caller have left there, and the registers,
// which the dynamic linker saves on the stack while it looks up the function that is called next. AddressSanitizer
// would move the array off the stack.
__attribute__((noinline, no_sanitize("address"))) ORVANE_LEAVES_NO_REGISTERS void WipeUsedStack() {
    char used[32 * 1024];
    explicit_bzero(used, sizeof used);
}

// False, with no bytes, for a file that cannot be opened.
bool ReadFile(const char* path, std::string& bytes) {
    bytes.clear();
    const std::unique_ptr<FILE, int (*)(FILE*)> stream(fopen(path, "rb"), fclose);
    if (!stream) return false;
    bytes = ReadToEnd(stream.get());
    return true;
}

void LogFault(Fault fault, const EncryptedIni::File& file) {
    switch (fault) {
        case Fault::kHeadBase:
            ORVANE_LOG_ERROR("config file read headbase failed");
            break;
        case Fault::kMagic:
            ORVANE_LOG_ERROR("config file magic not match file magic is %d, program magic is %d", file.magic,
                             EncryptedIni::kMagic);
            break;
        case Fault::kVersion:
            ORVANE_LOG_ERROR("config file version not match, file version is %d, program version is %d", file.version,
                             EncryptedIni::kVersion);
            break;
        case Fault::kHeadExt:
            ORVANE_LOG_ERROR("config file read headext failed");
            break;
        case Fault::kEncryption:
            ORVANE_LOG_ERROR("config file Encytion is not TEA, encyption is %d", file.encryption);
            break;
        case Fault::kPublicKeyLength:
            ORVANE_LOG_ERROR("config file PubKeyLen is not %d, PubKeyLen is %d", EncryptedIni::kPublicKeyLength,
                             file.publicKeyLength);
            break;
        case Fault::kDigestLength:
            ORVANE_LOG_ERROR("config file Md5Len is not %d, Md5Len is %d", EncryptedIni::kDigestLength,
                             file.digestLength);
            break;
        case Fault::kBody:
            ORVANE_LOG_ERROR("config file read body failed!");
            break;
        case Fault::kDigest:
            ORVANE_LOG_ERROR("config file md5 check failed!");
            break;
        case Fault::kNone:
            break;
    }
}

}  // namespace

bool EncryptedIniFileImpl::Load() {
    const CCritical guard(&_mutex);
    std::string bytes, seen;
    IniText loaded;
    EncryptedIni::File file;
    Fault fault = Fault::kNone;
    bool exists = false;
    for (int look = 0; look < kLooks; ++look) {
        exists = ReadFile(_path.c_str(), bytes);
        if (look > 0 && bytes == seen) break;
        file = {};
        fault = EncryptedIni::Parse(bytes, file);
        const bool isOpen = exists && fault == Fault::kNone && OpenBody(file.body, loaded);
        if (isOpen || TakeInterruptedSave(loaded)) {
            NoteLoaded(std::move(loaded));
            return true;
        }
        seen = bytes;  // another process may have saved between the looks at file, key and new file
    }
    if (exists) NoteUnsaved();  // plain text: the next save enciphers it, also of the same lines
    if (!exists)
        ORVANE_LOG_INFO("config file %s is not exist", _path.c_str());
    else if (fault != Fault::kNone)
        LogFault(fault, file);
    else
        ORVANE_LOG_ERROR("config file kx_symmetry_decrypt2 failed!");
    return false;
}

bool EncryptedIniFileImpl::Save() {
    const CCritical guard(&_mutex);
    if (PutOffSave()) return true;
    EncryptedIni::TeaKey key{};
    CurvePublicKey publicKey{};
    _MakeTeaKey(key, publicKey);
    const std::string bytes = EncryptedIni::Build(_text.Publish(), key, publicKey);
    // A text too long for the format: the file stays, and so must its key.
    if (!bytes.empty() && Replace(bytes, key)) NoteSaved();
    explicit_bzero(key.data(), key.size());
    WipeUsedStack();
    return true;
}

bool EncryptedIniFileImpl::Replace(const std::string& bytes, const EncryptedIni::TeaKey& key) {
    FileReplacement file(_path.c_str());
    if (file.Lock() && !FinishInterruptedSave(file)) return false;
    if (!file.Prepare(bytes)) return false;
    _SaveTeaKey(key);
    const bool hasOld = file.Old() && file.Old()->st_size > 0;
    if (!IsKept(key) && hasOld) return false;  // without its key the new file is of use to the peer alone
    const bool isInPlace = file.PutInPlace();
    // A writer that went past the lock may have changed the key after this one did. Its file may have been put in place
    // before this one's, and the key then belongs to a file that is gone; or after it, and all is well.
    if (IsKept(key)) return isInPlace;
    std::string now;
    if (ReadFile(_path.c_str(), now) && now == bytes) _SaveTeaKey(key);
    return false;  // whether file and key belong together now is not known
}

bool EncryptedIniFileImpl::TakeInterruptedSave(IniText& text) {
    FileReplacement file(_path.c_str());
    const std::string left = file.LeftOver();
    if (left.empty() || !OpenWhole(left, text)) return false;
    // Where another has the lock, nothing is put in place here: he does that.
    if (file.Lock(FileReplacement::Duration(0)) && file.LeftOver() == left) file.PutLeftOverInPlace();
    return true;
}

bool EncryptedIniFileImpl::FinishInterruptedSave(FileReplacement& file) {
    const std::string left = file.LeftOver();
    if (left.empty()) return true;
    std::string bytes;
    IniText unused;
    if (ReadFile(_path.c_str(), bytes) && OpenWhole(bytes, unused)) return true;
    return !OpenWhole(left, unused) || file.PutLeftOverInPlace();
}

bool EncryptedIniFileImpl::OpenWhole(std::string_view bytes, IniText& text) {
    EncryptedIni::File file;
    return EncryptedIni::Parse(bytes, file) == Fault::kNone && OpenBody(file.body, text);
}

bool EncryptedIniFileImpl::OpenBody(std::string_view body, IniText& text) {
    EncryptedIni::TeaKey key{};
    _GetTeaKey(key);
    const bool isOpen = EncryptedIni::Open(body, key, text);
    explicit_bzero(key.data(), key.size());
    WipeUsedStack();
    return isOpen;
}

bool EncryptedIniFileImpl::IsKept(const EncryptedIni::TeaKey& key) {
    EncryptedIni::TeaKey kept{};
    _GetTeaKey(kept);
    const bool isKept = kept == key;
    explicit_bzero(kept.data(), kept.size());
    return isKept;
}

void EncryptedIniFileImpl::_MakeTeaKey(EncryptedIni::TeaKey& key, CurvePublicKey& publicKey) {
    EncryptedIni::MakeKey(PeerPublicKey(), key, publicKey);
}

void EncryptedIniFileImpl::_SaveTeaKey(const EncryptedIni::TeaKey& key) {
    std::string text = base64_encode(reinterpret_cast<const unsigned char*>(key.data()), EncryptedIni::kKeyLength);
    SecurityStore::GetInstance()->SetString(KeyName(), text.c_str());
    explicit_bzero(text.data(), text.size());
}

void EncryptedIniFileImpl::_GetTeaKey(EncryptedIni::TeaKey& key) {
    const AString text = SecurityStore::GetInstance()->GetString(KeyName(), "");
    std::string bytes = base64_decode(text.c_str());
    std::copy_n(bytes.begin(), std::min(bytes.size(), key.size()), key.begin());
    explicit_bzero(bytes.data(), bytes.size());
    explicit_bzero(const_cast<char*>(text.c_str()), static_cast<size_t>(text.length()));  // its only owner is here
}

const char* EncryptedIniFileImpl::KeyName() const {
    const char* slash = strrchr(_path.c_str(), '/');
    return slash ? slash + 1 : _path.c_str();
}

}  // namespace Quern
