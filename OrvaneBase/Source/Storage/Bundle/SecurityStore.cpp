#include "Storage/Bundle/SecurityStore.h"

#include <string.h>

#include <atomic>

#include "Storage/Bundle/OrvaneCoreKC.h"

namespace Quern {
namespace {

constexpr char kService[] = "OrvaneCoreService";

class SecurityStoreImp final : public SecurityStore {
public:
    void SetString(const char* key, const char* value) override {
        OrvaneCoreKC::setPassword_forService_account(value, kService, key);
    }
    AString GetString(const char* key, const char* defaultValue) override {
        std::optional<std::string> text = OrvaneCoreKC::passwordForService_account(kService, key);
        if (!text) return {defaultValue};
        AString copy(text->data(), static_cast<int>(text->size()));
        explicit_bzero(text->data(), text->size());
        return copy;
    }
};

std::atomic<SecurityStore*> s_instance{nullptr};

}  // namespace

SecurityStore* SecurityStore::GetInstance() {
    SecurityStore* instance = s_instance.load(std::memory_order_acquire);
    if (instance) return instance;
    // Two bundles that are saved at once may both come here: the second gives way.
    SecurityStore* const made = new SecurityStoreImp;
    if (s_instance.compare_exchange_strong(instance, made, std::memory_order_acq_rel)) return made;
    delete made;
    return instance;
}

void SecurityStore::ReleaseInstance() {
    delete s_instance.exchange(nullptr, std::memory_order_acq_rel);
}

}  // namespace Quern
