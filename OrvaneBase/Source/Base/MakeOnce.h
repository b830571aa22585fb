// How singletons come about that any thread may ask for first.
#ifndef ORVANE_BASE_MAKE_ONCE_H
#define ORVANE_BASE_MAKE_ONCE_H

#include <atomic>

namespace Quern {

// The object behind `place`, made at the first need. Any thread, without a lock, so that what `make` calls may come
// back here: of two first callers one installs its object, and the other deletes its own and takes that. So T's
// constructor may run twice, and its destructor once while the T that counts lives: neither may do what must happen
// only once.
template <typename T, typename Make>
T* MakeOnce(std::atomic<T*>& place, Make make) {
    T* current = place.load(std::memory_order_acquire);
    if (current) return current;
    T* const made = make();
    if (place.compare_exchange_strong(current, made, std::memory_order_acq_rel)) return made;
    delete made;
    return current;
}

}  // namespace Quern

#endif
