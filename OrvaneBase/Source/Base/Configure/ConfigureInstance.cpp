// Which Configure is in force: the client of the configuration server, made at the first need.
#include <atomic>

#include "Base/Configure/ConfigureImpl.h"
#include "Orvane/OrvaneCore.h"

namespace Orvane {
namespace {

std::atomic<Configure*> g_inForce{nullptr};  // what Use put there
std::atomic<ConfigureImpl*> g_client{nullptr};
std::atomic<ConfigureImpl*> g_former{nullptr};  // the head of the chain of those that stay in memory

thread_local bool t_isOpening = false;

// A line that was logged while a client opened its file has come back here by way of a log callback, which reads a
// setting: what a client before this one holds, else the manifest.
Configure* WhileOpening() {
    if (ConfigureImpl* const former = g_former.load(std::memory_order_acquire)) return former;
    static ConfigureImpl* manifest = new ConfigureImpl(nullptr);
    return manifest;
}

// Without a lock, since that callback runs under the log's. Of two first callers each opens the file, and one is the
// client. The other is kept, where nobody finds it and it saves nothing: a bundle that is deleted leaves its file in
// plain text.
Configure* MakeClient() {
    if (t_isOpening) return WhileOpening();
    t_isOpening = true;
    auto* const made = new ConfigureImpl;
    t_isOpening = false;
    ConfigureImpl* winner = nullptr;
    if (!g_client.compare_exchange_strong(winner, made, std::memory_order_acq_rel)) {
        made->Release();
        made->Keep(g_former);
        return winner;
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
    released->Keep(g_former);
}

}  // namespace Orvane
