// Which Configure is in force: the client of the configuration server, made at the first need.
#include <atomic>
#include <cstdint>

#include "Base/Configure/ConfigureImpl.h"
#include "Orvane/OrvaneCore.h"

namespace Orvane {
namespace {

std::atomic<Configure*> g_inForce{nullptr};  // what Use put there
// The client's address, or an odd number if there is none: a different number after each release. A thread that opens a
// client remembers the number and compares it afterwards. If it is still there, no other client has come and gone
// meanwhile and left a newer file.
constexpr uintptr_t kNone = 1;
std::atomic<uintptr_t> g_client{kNone};
std::atomic<ConfigureImpl*> g_former{nullptr};  // the head of the chain of those that stay in memory

thread_local bool t_isOpening = false;

ConfigureImpl* ClientOf(uintptr_t state) {
    return state & kNone ? nullptr : reinterpret_cast<ConfigureImpl*>(state);
}

// For a log callback that reads a setting inside a line which was logged while this thread opens the client's file:
// what a former client holds, else the manifest.
Configure* WhileOpening() {
    if (ConfigureImpl* const former = g_former.load(std::memory_order_acquire)) return former;
    static ConfigureImpl* manifest = new ConfigureImpl(nullptr);
    return manifest;
}

// Without a lock, since that callback runs under the log's. Of two first callers each opens the file, and one gets the
// client's place. The other's object is released, so that it saves nothing, and kept, since a bundle that is deleted
// leaves its file in plain text; WhileOpening may hand it out, for reading. A caller that opened the file before
// another client came and went opens it again.
Configure* MakeClient(uintptr_t before) {
    if (t_isOpening) return WhileOpening();
    for (;;) {
        t_isOpening = true;
        auto* const made = new ConfigureImpl;
        t_isOpening = false;
        if (g_client.compare_exchange_strong(before, reinterpret_cast<uintptr_t>(made), std::memory_order_acq_rel)) {
            AddApplicationQuitCallback(ReleaseConfigureInstance);
            return made;
        }
        made->Release();
        made->Keep(g_former);
        if (ConfigureImpl* const winner = ClientOf(before)) return winner;
    }
}

}  // namespace

Configure* Configure::GetInstance() {
    if (Configure* const inForce = g_inForce.load(std::memory_order_acquire)) return inForce;
    const uintptr_t state = g_client.load(std::memory_order_acquire);
    if (ConfigureImpl* const client = ClientOf(state)) return client;
    return MakeClient(state);
}

void Configure::Use(Configure* configure) {
    g_inForce.store(configure, std::memory_order_release);
}

void ReleaseConfigureInstance() {
    uintptr_t state = g_client.load(std::memory_order_acquire);
    ConfigureImpl* const client = ClientOf(state);
    if (!client) return;
    // Released while callers still find it: else they would make a second client, and both would work on one file.
    client->Release();
    // It stays in memory, so its address is a number that no other release gives.
    if (!g_client.compare_exchange_strong(state, state | kNone, std::memory_order_acq_rel)) return;
    client->Keep(g_former);
}

}  // namespace Orvane
