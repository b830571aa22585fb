#include "Storage/Bundle/GameId.h"

#include <atomic>
#include <cstdlib>
#include <cstring>

#include "Storage/Bundle/SolidConfigReader.h"

namespace Quern {
namespace {

constinit std::atomic<const char*> g_gameId{nullptr};

}  // namespace

const char* GameId() {
    const char* kept = g_gameId.load(std::memory_order_acquire);
    if (kept) return kept;
    const AString found = SolidConfigReader::GetStringWithoutBlanks("Orvane", "GameId");
    if (found.Empty()) return "";
    // Never freed, since callers keep the pointer. Of two first callers one drops its copy and gives the other's.
    char* copy = strdup(found.c_str());
    if (g_gameId.compare_exchange_strong(kept, copy, std::memory_order_acq_rel)) return copy;
    free(copy);
    return kept;
}

}  // namespace Quern
