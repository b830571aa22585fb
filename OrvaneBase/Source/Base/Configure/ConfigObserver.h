// What the configuration client calls on behalf of a module's observer.
#ifndef ORVANE_BASE_CONFIGURE_CONFIG_OBSERVER_H
#define ORVANE_BASE_CONFIGURE_CONFIG_OBSERVER_H

#include "Base/Configure/Configure.h"

namespace Orvane {

// Owns neither. Never deleted once the client has it: the client may be about to call it. It is called on the thread on
// which the answer arrived, with none of the client's locks held.
class ConfigObserver final : public ConfigureObserver {
public:
    // The observer may be null: then it hears nothing.
    ConfigObserver(IRemoteConfig* config, RemoteConfigObserver* observer) : _config(config), _observer(observer) {}

    void OnConfigureRefreshed(IStringIterator* keys) override {
        if (_observer) _observer->OnRemoteConfigRefreshed(_config, keys);
    }

private:
    IRemoteConfig* const _config;
    RemoteConfigObserver* const _observer;
};

}  // namespace Orvane

#endif
