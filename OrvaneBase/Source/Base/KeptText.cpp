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

// The list only grows, at its front, so it is walked without a lock. Two threads that bring the same new text at once
// may both enter it: one copy too many, which does no harm.
const KeptText::Value* KeptText::Keep(const char* text) {
    const Value* const last = _kept.load(std::memory_order_acquire);
    for (const Value* value = last; value; value = value->before)
        if (value->text == text) return value;
    auto* const made = new Value{text, last};
    while (!_kept.compare_exchange_weak(made->before, made, std::memory_order_acq_rel)) {
    }
    return made;
}

void KeptText::Install(const char* text, bool onlyIfEmpty) {
    const Value* current = _value.load(std::memory_order_acquire);
    if (onlyIfEmpty && !IsEmpty(current)) return;
    const Value* const wanted = Keep(text);
    while (current != wanted && (!onlyIfEmpty || IsEmpty(current)))
        if (_value.compare_exchange_weak(current, wanted, std::memory_order_acq_rel)) return;
}

}  // namespace Quern
