// A value that is read by many threads and replaced by one, where no reader ever waits.
#ifndef ORVANE_BASE_PUBLISHED_H
#define ORVANE_BASE_PUBLISHED_H

#include <atomic>
#include <memory>
#include <utility>

namespace Quern {

// Each version lies in a slot that counts its readers. A reader counts itself in and looks again whether the slot is
// still the current one; the publisher fills a slot that is not current and that nobody reads. Both steps are
// sequentially consistent: a reader that the publisher missed finds another slot current, and leaves without a look at
// the value. So a reader begins anew only when a version was published in between, and a reader that is stopped keeps
// its version and one slot, and nobody up. (The standard library's atomic shared pointer is a lock.)
template <typename T>
class Published {
    struct Slot {
        std::atomic<int> readers{0};
        std::unique_ptr<const T> value;  // changed while it is not current and has no readers
        Slot* next = nullptr;
    };

public:
    // What one reader sees: a version that stays as it is. Kept for a moment and on one thread, since its slot is not
    // used again meanwhile. The Published outlives it.
    class Reader {
    public:
        ~Reader() { _slot->readers.fetch_sub(1, std::memory_order_release); }
        Reader(const Reader&) = delete;
        Reader& operator=(const Reader&) = delete;

        const T& operator*() const { return *_slot->value; }
        const T* operator->() const { return _slot->value.get(); }

    private:
        friend class Published;
        explicit Reader(Slot* slot) : _slot(slot) {}  // counted in already
        Slot* const _slot;
    };

    explicit Published(T value) { Publish(std::move(value)); }
    // REQUIRES: no readers.
    ~Published() {
        for (Slot* slot = _slots; slot;)
            delete std::exchange(slot, slot->next);
    }
    Published(const Published&) = delete;
    Published& operator=(const Published&) = delete;

    // The current version. Any thread, without a lock.
    Reader Read() const {
        for (;;) {
            Slot* const slot = _current.load();
            slot->readers.fetch_add(1);
            if (_current.load() == slot) return Reader(slot);
            slot->readers.fetch_sub(1, std::memory_order_release);
        }
    }

    // Makes a value the current version, and deletes those before it that nobody reads. One thread at a time.
    void Publish(T value) {
        Slot* const slot = FreeSlot();
        slot->value = std::make_unique<const T>(std::move(value));
        _current.store(slot);
        for (Slot* other = _slots; other; other = other->next)
            if (IsFree(other)) other->value.reset();
    }

private:
    // For the publisher. A reader that counts itself in behind this look finds that the slot is not current, and
    // leaves.
    bool IsFree(const Slot* slot) const {
        return slot != _current.load(std::memory_order_relaxed) && slot->readers.load() == 0;
    }
    // A slot to fill. There are never more than the readers that were held at one time, and two.
    Slot* FreeSlot() {
        for (Slot* slot = _slots; slot; slot = slot->next)
            if (IsFree(slot)) return slot;
        auto* const made = new Slot;
        made->next = std::exchange(_slots, made);
        return made;
    }

    std::atomic<Slot*> _current{nullptr};
    Slot* _slots = nullptr;  // the publisher's: all there are
};

}  // namespace Quern

#endif
