// Tells the game's script layer of the refreshes of the game's own module.
#ifndef ORVANE_BASE_CONFIGURE_CS_REMOTE_CONFIG_OBSERVER_H
#define ORVANE_BASE_CONFIGURE_CS_REMOTE_CONFIG_OBSERVER_H

#include <atomic>

#include "Orvane/IRemoteConfig.h"

// The script layer's callback, one for all observers; null for none. Set and called without a lock.
extern std::atomic<void (*)(const char* keys)> g_callback;

class CSRemoteConfigObserver final : public Orvane::RemoteConfigObserver {
public:
    // Calls the callback with {"KeyList":["name",..]} and a newline.
    void OnRemoteConfigRefreshed(Orvane::IRemoteConfig* config, Orvane::IStringIterator* keys) override;
};

#endif
