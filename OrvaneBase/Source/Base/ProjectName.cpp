#include "Base/ProjectName.h"

#include <atomic>
#include <string>

namespace Quern {
namespace {

constexpr char kDefaultName[] = "Orvane";

// Earlier names stay reachable from the later one, since their texts were handed out.
struct Name {
    std::string text;
    const Name* before;
};

constinit std::atomic<const Name*> g_name{nullptr};

}  // namespace

const char* ProjectName() {
    const Name* name = g_name.load(std::memory_order_acquire);
    return name ? name->text.c_str() : kDefaultName;
}

void SetProjectName(const char* name) {
    if (!name) name = "";
    const Name* current = g_name.load(std::memory_order_acquire);
    if (name == std::string_view(current ? current->text.c_str() : kDefaultName)) return;
    auto* made = new Name{name, current};
    while (!g_name.compare_exchange_weak(made->before, made, std::memory_order_acq_rel)) {
    }
}

}  // namespace Quern
