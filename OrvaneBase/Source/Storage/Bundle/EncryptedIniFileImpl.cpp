#include "Storage/Bundle/EncryptedIniFileImpl.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

#include "Base/XLog.h"
#include "Serializer/Codec/Base64.h"
#include "Serializer/Codec/PeerKey.h"
#include "Storage/Bundle/SecurityStore.h"
#include "Storage/File/WholeFile.h"

namespace Quern {
namespace {

using EncryptedIni::Fault;

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
    const std::unique_ptr<FILE, int (*)(FILE*)> stream(fopen(_path.c_str(), "rb"), fclose);
    if (!stream) {
        ORVANE_LOG_INFO("config file %s is not exist", _path.c_str());
        return false;
    }
    const std::string bytes = ReadToEnd(stream.get());
    EncryptedIni::File file;
    const Fault fault = EncryptedIni::Parse(bytes, file);
    if (fault != Fault::kNone) {
        LogFault(fault, file);
        return false;
    }
    EncryptedIni::TeaKey key{};
    _GetTeaKey(key);
    if (EncryptedIni::Open(file.body, key, _text)) return true;
    ORVANE_LOG_ERROR("config file kx_symmetry_decrypt2 failed!");
    return false;
}

bool EncryptedIniFileImpl::Save() {
    const CCritical guard(&_mutex);
    EncryptedIni::TeaKey key{};
    CurvePublicKey publicKey{};
    _MakeTeaKey(key, publicKey);
    const std::string bytes = EncryptedIni::Build(_text, key, publicKey);
    if (bytes.empty()) return true;  // the file stays, and so must the key that opens it
    // The key and the file that it opens change places as close together as can be.
    FileReplacement file(_path.c_str(), bytes);
    _SaveTeaKey(key);
    file.PutInPlace();
    return true;
}

void EncryptedIniFileImpl::_MakeTeaKey(EncryptedIni::TeaKey& key, CurvePublicKey& publicKey) {
    EncryptedIni::MakeKey(PeerPublicKey(), key, publicKey);
}

void EncryptedIniFileImpl::_SaveTeaKey(const EncryptedIni::TeaKey& key) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(key.data());
    SecurityStore::GetInstance()->SetString(KeyName(), base64_encode(bytes, EncryptedIni::kKeyLength).c_str());
}

void EncryptedIniFileImpl::_GetTeaKey(EncryptedIni::TeaKey& key) {
    const AString text = SecurityStore::GetInstance()->GetString(KeyName(), "");
    const std::string bytes = base64_decode(text.c_str());
    std::copy_n(bytes.begin(), std::min(bytes.size(), key.size()), key.begin());
}

const char* EncryptedIniFileImpl::KeyName() const {
    const char* slash = strrchr(_path.c_str(), '/');
    return slash ? slash + 1 : _path.c_str();
}

}  // namespace Quern
