// The place for small secrets that must not stand in application files.
#ifndef ORVANE_STORAGE_BUNDLE_SECURITY_STORE_H
#define ORVANE_STORAGE_BUNDLE_SECURITY_STORE_H

#include "Base/Container/AString.h"

namespace Quern {

// Texts by key in the platform's keychain. Failures are silent. Slot order is a contract. No lock of its own: callers
// that share a key agree among themselves.
class SecurityStore {
public:
    // Made at the first call.
    static SecurityStore* GetInstance();
    static void ReleaseInstance();

    virtual ~SecurityStore() = default;
    // Replaces what the key had. Null, for either, changes nothing.
    virtual void SetString(const char* key, const char* value) = 0;
    // The default if there is no text under the key or an empty one.
    virtual AString GetString(const char* key, const char* defaultValue) = 0;
};

}  // namespace Quern

#endif
