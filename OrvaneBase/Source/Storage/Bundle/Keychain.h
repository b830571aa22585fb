// The platform's keychain: small secrets that belong to the user, outside the application's own files.
#ifndef ORVANE_STORAGE_BUNDLE_KEYCHAIN_H
#define ORVANE_STORAGE_BUNDLE_KEYCHAIN_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Base/Seam.h"

namespace Quern {

// The home platform's status codes; an implementation may give others.
constexpr int32_t errSecSuccess = 0;
constexpr int32_t errSecIO = -36;
constexpr int32_t errSecParam = -50;
constexpr int32_t errSecNotAvailable = -25291;  // there is no place for a keychain
constexpr int32_t errSecAuthFailed = -25293;    // others can read or write the keychain
constexpr int32_t errSecDuplicateItem = -25299;
constexpr int32_t errSecItemNotFound = -25300;
constexpr int32_t errSecDecode = -26275;  // the keychain is damaged

// One generic password. Service and account together name it.
struct KeychainItem {
    std::string service;
    std::string account;
    std::string data;                       // any bytes; empty unless asked for
    std::optional<std::string> accessible;  // when the platform may give it out
};

// What an item must have; without a value, anything.
struct KeychainQuery {
    std::optional<std::string> service;
    std::optional<std::string> account;
};

enum class KeychainLimit { kOne, kAll };

// Any thread; any number of processes. Each operation is whole or not at all.
class Keychain : public Seam<Keychain> {
public:
    // errSecDuplicateItem if there is one of that name.
    virtual int32_t SecItemAdd(const KeychainItem& item) = 0;
    // Fills `found` with the matching items, their data only if wanted. errSecItemNotFound if there is none.
    virtual int32_t SecItemCopyMatching(const KeychainQuery& query, KeychainLimit limit, bool wantsData,
                                        std::vector<KeychainItem>& found) = 0;
    // Deletes all that match. errSecItemNotFound if there is none.
    virtual int32_t SecItemDelete(const KeychainQuery& query) = 0;

    // Between Begin and Commit no other thread or process comes in, and a keychain that stores its items together may
    // store them once, at the Commit that ends the outermost pair; its status says whether that worked. A pair in which
    // an addition fails should change nothing: else a password that cannot be replaced is lost.
    virtual void Begin() {}
    virtual int32_t Commit() { return errSecSuccess; }
};

template <>
std::shared_ptr<Keychain> Seam<Keychain>::MakeBuiltIn();

}  // namespace Quern

#endif
