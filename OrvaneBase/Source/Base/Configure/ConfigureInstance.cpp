// Which Configure is in force: the client of the configuration server, made at the first need.
#include <atomic>
#include <memory>

#include "Base/Configure/ConfigureImpl.h"
#include "Orvane/OrvaneCore.h"

namespace Orvane {
namespace {

std::atomic<Configure*> g_inForce{nullptr};  // what Use put there
std::atomic<ConfigureImpl*> g_client{nullptr};
std::atomic<ConfigureImpl*> g_lastReleased{nullptr};  // the head of the chain that holds them all

// Held while a client is made, which opens its file. Two that lose and win as other singletons do cannot be had here:
// one that is deleted leaves its file in plain text. Never destroyed.
Quern::CMutex& MakingMutex() {
    static Quern::CMutex* mutex = new Quern::CMutex(true);
    return *mutex;
}
bool g_isMaking ORVANE_GUARDED_BY(MakingMutex()) = false;

// A line of the making itself has come back here by way of a log callback that reads a setting: what a client before
// this one holds, else the manifest.
Configure* WhileMaking() {
    if (ConfigureImpl* const before = g_lastReleased.load(std::memory_order_acquire)) return before;
    static ConfigureImpl* manifest = new ConfigureImpl(nullptr);
    return manifest;
}

Configure* MakeClient() {
    ConfigureImpl* made = nullptr;
    {
        const Quern::CCritical guard(&MakingMutex());
        if (ConfigureImpl* const client = g_client.load(std::memory_order_acquire)) return client;
        if (g_isMaking) return WhileMaking();
        g_isMaking = true;
        made = new ConfigureImpl;
        g_isMaking = false;
        g_client.store(made, std::memory_order_release);
    }
    AddApplicationQuitCallback(ReleaseConfigureInstance);
    return made;
}

}  // namespace

Configure* Configure::GetInstance() {
    if (Configure* const inForce = g_inForce.load(std::memory_order_acquire)) return inForce;
    if (ConfigureImpl* const client = g_client.load(std::memory_order_acquire)) return client;
    return MakeClient();
}

void Configure::Use(Configure* configure) {
    g_inForce.store(configure, std::memory_order_release);
}

void ReleaseConfigureInstance() {
    ConfigureImpl* client = g_client.load(std::memory_order_acquire);
    if (!client) return;
    // While it is still the one that is found: a second client beside it would work on the same file.
    client->Release();
    ConfigureImpl* const released = client;
    if (!g_client.compare_exchange_strong(client, nullptr, std::memory_order_acq_rel)) return;
    released->_releasedBefore = g_lastReleased.exchange(released, std::memory_order_acq_rel);
}

}  // namespace Orvane
