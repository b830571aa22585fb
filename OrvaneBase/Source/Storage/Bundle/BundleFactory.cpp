#include "Storage/Bundle/BundleFactory.h"

#include <atomic>

#include "Base/XLog.h"
#include "Storage/Bundle/BundleImpl.h"

namespace Quern {
namespace {

std::atomic<BundleFactory*> s_instance{nullptr};
std::atomic<Bundle*> s_defaultBundle{nullptr};

}  // namespace

BundleFactory* BundleFactory::GetInstance() {
    if (!s_instance) s_instance = new BundleFactory;
    return s_instance;
}

void BundleFactory::ReleaseInstance() {
    delete s_instance.exchange(nullptr);
}

Bundle* BundleFactory::GetDefaultBundle() {
    if (!s_defaultBundle) s_defaultBundle = new BundleImpl(nullptr);
    return s_defaultBundle;
}

Bundle* BundleFactory::GetBundle(const char* name) {
    if (!name) {
        ORVANE_LOG_ERROR("name is NULL");
        return GetDefaultBundle();
    }
    const CCritical guard(&_mutex);
    std::unique_ptr<Bundle>& bundle = _bundles[name];
    if (!bundle) bundle = std::make_unique<BundleImpl>(name);
    return bundle.get();
}

void BundleFactory::DestoryBundle(const char* name) {
    if (!name) return;
    const CCritical guard(&_mutex);
    _bundles.erase(name);
}

}  // namespace Quern
