// Passwords by service and account, over the keychain.
#ifndef ORVANE_STORAGE_BUNDLE_ORVANE_CORE_KC_H
#define ORVANE_STORAGE_BUNDLE_ORVANE_CORE_KC_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Storage/Bundle/Keychain.h"

namespace Quern {

// A status that is not errSecSuccess, in `domain` kErrorDomain.
struct KCError {
    const char* domain = "";
    int32_t code = 0;
};

// Class methods alone. A null text is no text: where one is needed the status is kBadArguments. A failure gives nothing
// or false; the forms with `error` fill it where it is not null, and leave it alone on success.
// No lock: callers that write the same account agree among themselves.
class OrvaneCoreKC {
public:
    static constexpr const char* kErrorDomain = "com.orvane.core.keychain";
    static constexpr int32_t kBadArguments = -1001;

    using Attributes = std::vector<KeychainItem>;  // without data

    // The items of every service.
    static std::optional<Attributes> allAccounts();
    static std::optional<Attributes> allAccounts(KCError* error);
    // The items of one service; null for every service.
    static std::optional<Attributes> accountsForService(const char* service);
    static std::optional<Attributes> accountsForService_error(const char* service, KCError* error);

    // An empty password counts as none.
    static std::optional<std::string> passwordForService_account(const char* service, const char* account);
    static std::optional<std::string> passwordForService_account_error(const char* service, const char* account,
                                                                       KCError* error);
    static std::optional<std::string> passwordDataForService_account(const char* service, const char* account);
    static std::optional<std::string> passwordDataForService_account_error(const char* service, const char* account,
                                                                           KCError* error);

    static bool deletePasswordForService_account(const char* service, const char* account);
    static bool deletePasswordForService_account_error(const char* service, const char* account, KCError* error);

    // Deletes what there is and adds anew.
    static bool setPassword_forService_account(const char* password, const char* service, const char* account);
    static bool setPassword_forService_account_error(const char* password, const char* service, const char* account,
                                                     KCError* error);
    static bool setPasswordData_forService_account(const std::string* data, const char* service, const char* account);
    static bool setPasswordData_forService_account_error(const std::string* data, const char* service,
                                                         const char* account, KCError* error);

    // When the platform may give out what is set from now on; null for its own default. One value for the process,
    // unguarded: for start-up.
    static const char* accessibilityType();
    static void setAccessibilityType(const char* type);

private:
    static KeychainQuery _queryForService_account(const char* service, const char* account);
};

}  // namespace Quern

#endif
