// A keychain in memory.
#ifndef ORVANE_TESTS_SUPPORT_FAKE_KEYCHAIN_H
#define ORVANE_TESTS_SUPPORT_FAKE_KEYCHAIN_H

#include "Storage/Bundle/Keychain.h"
#include "Support/Test.h"

namespace OrvaneTest {

class FakeKeychain final : public Quern::Keychain {
public:
    // Puts one in force for the rest of the process.
    static std::shared_ptr<FakeKeychain> Install() {
        auto keychain = std::make_shared<FakeKeychain>();
        Use(keychain);
        return keychain;
    }

    int32_t SecItemAdd(const Quern::KeychainItem& item) override {
        const std::lock_guard<std::mutex> guard(_lock);
        calls.push_back("add " + item.account + (item.accessible ? " " + *item.accessible : ""));
        if (failure != Quern::errSecSuccess) return failure;
        return items.emplace(std::pair(item.service, item.account), item.data).second ? Quern::errSecSuccess
                                                                                      : Quern::errSecDuplicateItem;
    }
    int32_t SecItemCopyMatching(const Quern::KeychainQuery& query, Quern::KeychainLimit limit, bool wantsData,
                                std::vector<Quern::KeychainItem>& found) override {
        const std::lock_guard<std::mutex> guard(_lock);
        for (const auto& [name, data] : items) {
            if (query.service.value_or(name.first) != name.first || query.account.value_or(name.second) != name.second)
                continue;
            found.push_back({name.first, name.second, wantsData ? data : "", {}});
            if (limit == Quern::KeychainLimit::kOne) break;
        }
        return found.empty() ? Quern::errSecItemNotFound : Quern::errSecSuccess;
    }
    int32_t SecItemDelete(const Quern::KeychainQuery& query) override {
        const std::lock_guard<std::mutex> guard(_lock);
        calls.push_back("delete " + query.account.value_or("*"));
        if (failure != Quern::errSecSuccess) return failure;
        return items.erase({query.service.value_or(""), query.account.value_or("")}) > 0 ? Quern::errSecSuccess
                                                                                         : Quern::errSecItemNotFound;
    }

    std::map<std::pair<std::string, std::string>, std::string> items;  // by service and account
    std::vector<std::string> calls;
    int32_t failure = Quern::errSecSuccess;  // what adding and deleting give instead

private:
    std::mutex _lock;
};

}  // namespace OrvaneTest

#endif
