// The registry of the process's bundles.
#ifndef ORVANE_STORAGE_BUNDLE_BUNDLE_FACTORY_H
#define ORVANE_STORAGE_BUNDLE_BUNDLE_FACTORY_H

#include <map>
#include <memory>
#include <string>

#include "Storage/Bundle/BundleImpl.h"
#include "System/Thread/Mutex.h"

namespace Quern {

// What it gives stays its own. Any thread; not from a log callback.
class BundleFactory {
public:
    static BundleFactory* GetInstance();
    // Deletes the factory and its bundles, but for the default one.
    static void ReleaseInstance();
    BundleFactory() = default;

    // The library's own bundle, "Orvane.config" in the cache folder; made at the first call, on any thread, and never
    // deleted.
    BundleImpl* GetDefaultBundle();
    // The bundle over the file of that path, made if need be: the same object for the same name. Null gives the default
    // bundle, with a log line.
    Bundle* GetBundle(const char* name);
    // Deletes the bundle, which leaves its file in plain text. Null and unknown names do nothing.
    void DestoryBundle(const char* name);

private:
    // Guards _bundles, and is held while one opens its file and while one is deleted: a second object over the file,
    // even for a moment, would at its end write plain text over what the first one saved. Both log, so a log callback
    // that comes here can meet the log's lock head on.
    CMutex _mutex{true};
    std::map<std::string, std::unique_ptr<Bundle>> _bundles;
};

}  // namespace Quern

#endif
