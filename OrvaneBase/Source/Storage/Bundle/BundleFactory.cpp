#include "Storage/Bundle/BundleFactory.h"

#include <atomic>

#include "Base/MakeOnce.h"
#include "Base/XLog.h"

namespace Quern {
namespace {

std::atomic<BundleFactory*> s_instance{nullptr};
std::atomic<BundleImpl*> s_defaultBundle{nullptr};

// Held while the default bundle is made. Other singletons may be made twice by two first callers, and one of the two is
// deleted again; a bundle that is deleted leaves its file in plain text, so only one may be made. Never destroyed.
CMutex& DefaultBundleMutex() {
    static CMutex* mutex = new CMutex(true);
    return *mutex;
}

}  // namespace

BundleFactory* BundleFactory::GetInstance() {
    return MakeOnce(s_instance, [] { return new BundleFactory; });
}

void BundleFactory::ReleaseInstance() {
    delete s_instance.exchange(nullptr);
}

BundleImpl* BundleFactory::GetDefaultBundle() {
    if (BundleImpl* const made = s_defaultBundle.load(std::memory_order_acquire)) return made;
    const CCritical guard(&DefaultBundleMutex());
    if (!s_defaultBundle.load(std::memory_order_relaxed))
        s_defaultBundle.store(new BundleImpl(nullptr), std::memory_order_release);
    return s_defaultBundle.load(std::memory_order_relaxed);
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
