#include "Base/KeptText.h"

#include <string>

namespace Quern {

struct KeptText::Value {
    std::string text;
    const Value* before;
};

const char* KeptText::Get() const {
    const Value* const value = _value.load(std::memory_order_acquire);
    return value ? value->text.c_str() : "";
}

void KeptText::Set(const char* text) {
    Install(text ? text : "", false);
}

void KeptText::SetIfEmpty(const char* text) {
    Install(text ? text : "", true);
}

bool KeptText::IsEmpty(const Value* value) {
    return !value || value->text.empty();
}

void KeptText::Install(const char* text, bool onlyIfEmpty) {
    const Value* current = _value.load(std::memory_order_acquire);
    if (current && current->text == text) return;
    auto* const made = new Value{text, current};
    while (!onlyIfEmpty || IsEmpty(made->before))
        if (_value.compare_exchange_weak(made->before, made, std::memory_order_acq_rel)) return;
    delete made;
}

}  // namespace Quern
