// A keychain in one file of the application's container, outside its cache folder.
#include <sys/stat.h>

#include <mutex>

#include "Base/XLog.h"
#include "Serializer/Codec/RandomBytes.h"
#include "Storage/Bundle/Keychain.h"
#include "Storage/Bundle/Linux/KeychainFile.h"
#include "Storage/Bundle/Linux/KeychainSeal.h"
#include "Storage/File/FileReplacement.h"
#include "Storage/File/Linux/SecretFiles.h"
#include "Storage/File/PathSource.h"

namespace Quern {
namespace {

bool Matches(const KeychainItem& item, const KeychainQuery& query) {
    return (!query.service || *query.service == item.service) && (!query.account || *query.account == item.account);
}

std::string NameOf(const KeychainItem& item) {
    return item.service + '\0' + item.account;
}

std::string KeychainPath() {
    const std::string folder = PathSource::Current().Home() + "/Library";
    mkdir(folder.c_str(), 0700);
    return folder + "/" + kKeychainFileName;
}

class FileKeychain final : public Keychain {
public:
    void Begin() override {
        _mutex.lock();
        if (_depth++ > 0) return;
        _path = KeychainPath();
        _replacement.emplace(_path);
        _replacement->Lock();
        _isChanged = _hasFailed = false;
        _status = ReadKeychainFile(_path, _content);
        if (_status != errSecSuccess) _content = {};
        if (_content.isLeftOver && !_replacement->PutLeftOverInPlace()) _status = errSecIO;
    }

    int32_t Commit() override {
        int32_t status = errSecSuccess;
        if (--_depth == 0) {
            if (_isChanged && !_hasFailed) status = WriteKeychainFile(*_replacement, _path, _content);
            _replacement.reset();
        }
        _mutex.unlock();
        return status;
    }

    int32_t SecItemAdd(const KeychainItem& item) override {
        Begin();
        const int32_t added = Add(item);
        _hasFailed |= added != errSecSuccess;  // what was deleted to make way for the item stays
        const int32_t committed = Commit();
        return added != errSecSuccess ? added : committed;
    }

    int32_t SecItemDelete(const KeychainQuery& query) override {
        Begin();
        int32_t deleted = _status;
        if (deleted == errSecSuccess) {
            const auto matches = [&](const KeychainItem& item) { return Matches(item, query); };
            deleted = std::erase_if(_content.items, matches) > 0 ? errSecSuccess : errSecItemNotFound;
            _isChanged |= deleted == errSecSuccess;
        }
        const int32_t committed = Commit();
        return deleted != errSecSuccess ? deleted : committed;
    }

    int32_t SecItemCopyMatching(const KeychainQuery& query, KeychainLimit limit, bool wantsData,
                                std::vector<KeychainItem>& found) override {
        const std::lock_guard<std::recursive_mutex> guard(_mutex);
        // The file is replaced whole, so that reading it needs no lock against other processes.
        if (_depth == 0) _status = ReadKeychainFile(KeychainPath(), _content);
        if (_status != errSecSuccess) return _status;
        std::vector<KeychainItem> matching;
        for (const KeychainItem& item : _content.items) {
            if (!Matches(item, query)) continue;
            KeychainItem& copy = matching.emplace_back(item);
            copy.data.clear();
            if (wantsData && !SealOf(_content.salt).Unseal(NameOf(item), item.data, copy.data)) {
                ORVANE_CONSOLE(kLogError, "keychain item %s was not sealed here", item.account.c_str());
                return errSecDecode;
            }
            if (limit == KeychainLimit::kOne) break;
        }
        if (matching.empty()) return errSecItemNotFound;
        found = std::move(matching);
        return errSecSuccess;
    }

private:
    int32_t Add(const KeychainItem& item) {
        if (_status != errSecSuccess) _status = StartAnew();
        if (_status != errSecSuccess) return _status;
        for (const KeychainItem& other : _content.items)
            if (Matches(other, {item.service, item.account})) return errSecDuplicateItem;
        KeychainItem sealed{item.service, item.account, {}, item.accessible};
        if (!SealOf(_content.salt).Seal(NameOf(item), item.data, sealed.data)) return errSecNotAvailable;
        _content.items.push_back(std::move(sealed));
        _isChanged = true;
        return errSecSuccess;
    }

    // In place of a missing keychain, or of one that cannot be used: that is set aside, and not lost.
    int32_t StartAnew() {
        if (_status == errSecIO) return _status;
        if (_status != errSecItemNotFound) {
            const std::string aside = _path + kUnusableSuffix;
            remove(aside.c_str());  // an older one may be of a kind that cannot be replaced by this one
            if (rename(_path.c_str(), aside.c_str()) != 0) return _status;
            ORVANE_CONSOLE(kLogError, "keychain %s is set aside as %s", _path.c_str(), aside.c_str());
            _replacement.emplace(_path);  // of what is there now, and not what the new one is to be like
            if (!_replacement->Lock() || _replacement->Old()) return errSecIO;
        }
        _content = {};
        _content.salt.resize(KeychainSeal::kSaltLength);
        return ReadRandom(_content.salt.data(), _content.salt.size()) ? errSecSuccess : errSecNotAvailable;
    }

    const KeychainSeal& SealOf(const std::string& salt) {
        if (!_seal || _sealSalt != salt) {
            _seal.emplace(salt);
            _sealSalt = salt;
        }
        return *_seal;
    }

    std::recursive_mutex _mutex;  // held from Begin to Commit
    int _depth = 0;
    std::optional<FileReplacement> _replacement;  // holds other processes off
    std::string _path;
    KeychainContent _content;  // of the file, as _status says
    int32_t _status = errSecSuccess;
    bool _isChanged = false;
    bool _hasFailed = false;
    std::optional<KeychainSeal> _seal;  // for _sealSalt, kept since deriving its key costs more than using it
    std::string _sealSalt;
};

}  // namespace

template <>
std::shared_ptr<Keychain> Seam<Keychain>::MakeBuiltIn() {
    return std::make_shared<FileKeychain>();
}

}  // namespace Quern
