#include "Storage/Bundle/OrvaneCoreKC.h"

#include <string.h>

namespace Quern {
namespace {

std::optional<std::string>& AccessibilityType() {
    static auto* type = new std::optional<std::string>;
    return *type;
}

std::optional<std::string> TextOrNone(const char* text) {
    return text ? std::optional<std::string>(text) : std::nullopt;
}

// Whether the status is a success; puts any other into `error`.
bool Succeeded(int32_t status, KCError* error) {
    if (status == errSecSuccess) return true;
    if (error) *error = {OrvaneCoreKC::kErrorDomain, status};
    return false;
}

}  // namespace

std::optional<OrvaneCoreKC::Attributes> OrvaneCoreKC::allAccounts() {
    return allAccounts(nullptr);
}

std::optional<OrvaneCoreKC::Attributes> OrvaneCoreKC::allAccounts(KCError* error) {
    return accountsForService_error(nullptr, error);
}

std::optional<OrvaneCoreKC::Attributes> OrvaneCoreKC::accountsForService(const char* service) {
    return accountsForService_error(service, nullptr);
}

std::optional<OrvaneCoreKC::Attributes> OrvaneCoreKC::accountsForService_error(const char* service, KCError* error) {
    Attributes found;
    const KeychainQuery query = _queryForService_account(service, nullptr);
    if (!Succeeded(Keychain::Current().SecItemCopyMatching(query, KeychainLimit::kAll, false, found), error)) return {};
    return found;
}

std::optional<std::string> OrvaneCoreKC::passwordForService_account(const char* service, const char* account) {
    return passwordForService_account_error(service, account, nullptr);
}

std::optional<std::string> OrvaneCoreKC::passwordForService_account_error(const char* service, const char* account,
                                                                          KCError* error) {
    std::optional<std::string> data = passwordDataForService_account_error(service, account, error);
    if (data && data->empty()) data.reset();
    return data;
}

std::optional<std::string> OrvaneCoreKC::passwordDataForService_account(const char* service, const char* account) {
    return passwordDataForService_account_error(service, account, nullptr);
}

std::optional<std::string> OrvaneCoreKC::passwordDataForService_account_error(const char* service, const char* account,
                                                                              KCError* error) {
    int32_t status = kBadArguments;
    std::vector<KeychainItem> found;
    if (service && account)
        status = Keychain::Current().SecItemCopyMatching(_queryForService_account(service, account),
                                                         KeychainLimit::kOne, true, found);
    if (!Succeeded(status, error) || found.empty()) return {};
    return std::move(found.front().data);
}

bool OrvaneCoreKC::deletePasswordForService_account(const char* service, const char* account) {
    return deletePasswordForService_account_error(service, account, nullptr);
}

bool OrvaneCoreKC::deletePasswordForService_account_error(const char* service, const char* account, KCError* error) {
    int32_t status = kBadArguments;
    if (service && account) status = Keychain::Current().SecItemDelete(_queryForService_account(service, account));
    return Succeeded(status, error);
}

bool OrvaneCoreKC::setPassword_forService_account(const char* password, const char* service, const char* account) {
    return setPassword_forService_account_error(password, service, account, nullptr);
}

bool OrvaneCoreKC::setPassword_forService_account_error(const char* password, const char* service, const char* account,
                                                        KCError* error) {
    std::optional<std::string> data = TextOrNone(password);
    const bool isSet = setPasswordData_forService_account_error(data ? &*data : nullptr, service, account, error);
    if (data) explicit_bzero(data->data(), data->size());
    return isSet;
}

bool OrvaneCoreKC::setPasswordData_forService_account(const std::string* data, const char* service,
                                                      const char* account) {
    return setPasswordData_forService_account_error(data, service, account, nullptr);
}

bool OrvaneCoreKC::setPasswordData_forService_account_error(const std::string* data, const char* service,
                                                            const char* account, KCError* error) {
    if (!data || !service || !account) return Succeeded(kBadArguments, error);
    Keychain& keychain = Keychain::Current();
    keychain.Begin();
    deletePasswordForService_account(service, account);
    KeychainItem item{service, account, *data, AccessibilityType()};
    int32_t status = keychain.SecItemAdd(item);
    explicit_bzero(item.data.data(), item.data.size());
    const int32_t committed = keychain.Commit();
    if (status == errSecSuccess) status = committed;
    return Succeeded(status, error);
}

const char* OrvaneCoreKC::accessibilityType() {
    const std::optional<std::string>& type = AccessibilityType();
    return type ? type->c_str() : nullptr;
}

void OrvaneCoreKC::setAccessibilityType(const char* type) {
    AccessibilityType() = TextOrNone(type);
}

KeychainQuery OrvaneCoreKC::_queryForService_account(const char* service, const char* account) {
    return {TextOrNone(service), TextOrNone(account)};
}

}  // namespace Quern
