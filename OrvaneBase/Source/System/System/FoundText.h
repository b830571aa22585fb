// A text that is found once and kept for the process, such as the device's model.
#ifndef ORVANE_SYSTEM_SYSTEM_FOUND_TEXT_H
#define ORVANE_SYSTEM_SYSTEM_FOUND_TEXT_H

#include <atomic>
#include <cstdlib>

namespace Quern {

// A static object, without a destructor that would run under a live thread. No lock: finding may log or read a setting.
class FoundText {
public:
    // What is kept, else what `find` gives: a text on the heap, which is kept, or null. Any thread; of two that find at
    // a time the second gives way.
    template <typename Find>
    const char* Get(Find find) {
        const char* kept = _text.load(std::memory_order_acquire);
        if (kept) return kept;
        const char* const found = find();
        if (!found || _text.compare_exchange_strong(kept, found, std::memory_order_acq_rel)) return found;
        free(const_cast<char*>(found));
        return kept;
    }

private:
    std::atomic<const char*> _text{nullptr};  // on the heap; never freed, since callers keep the pointer
};

}  // namespace Quern

#endif
