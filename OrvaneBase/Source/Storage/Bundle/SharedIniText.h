// The INI text of one store: changed by one thread at a time, read by all without waiting.
#ifndef ORVANE_STORAGE_BUNDLE_SHARED_INI_TEXT_H
#define ORVANE_STORAGE_BUNDLE_SHARED_INI_TEXT_H

#include <atomic>
#include <mutex>
#include <thread>
#include <utility>

#include "Base/Published.h"
#include "Storage/Bundle/IniText.h"

namespace Quern {

// Changes go to a text of their own. Readers have a version that was published, which takes no lock; the first read
// behind a change publishes it, so that many changes in a row cost one version.
//
// While a thread holds its changes back, it alone reads them. The others go on with the version before, still without a
// lock, until that thread releases them: all become readable at once. Only a change by another thread meanwhile, which
// must be able to read what it wrote, makes all readable that there is.
//
// Any thread. A mutex is taken for what happens in memory alone: nothing is called, logged or waited for under it.
class SharedIniText {
public:
    // look(const IniText&): must not do anything but look, and what it returns must not point into the text.
    template <typename Look>
    auto Read(Look look) const {
        if (IsHolder() || _isAhead.load(std::memory_order_acquire)) {
            const std::lock_guard<std::mutex> guard(_mutex);
            if (IsHolder()) return look(_text);
            PublishChanges();
        }
        const Published<IniText>::Reader version = _published.Read();
        return look(*version);
    }

    // change(IniText&): gives its result. Must not do anything but change the text.
    template <typename Change>
    auto Edit(Change change) {
        const std::lock_guard<std::mutex> guard(_mutex);
        if (!IsHolder()) _isAhead.store(true, std::memory_order_release);
        return change(_text);
    }

    void Replace(IniText text) {
        Edit([&text](IniText& current) { current = std::move(text); });
    }

    // The calls come in pairs, both of a pair on one thread. Of threads that hold back at the same time the first one
    // is the holder.
    void HoldBack();
    void Release();
    // Spares the next reader the publishing, and gives the newest text. REQUIRES: the caller's lock keeps changes off
    // while that copy is destroyed.
    IniText Publish();

private:
    bool IsHolder() const {
        const std::thread::id holder = _holder.load(std::memory_order_relaxed);
        return holder != std::thread::id() && holder == std::this_thread::get_id();
    }
    // REQUIRES: the mutex.
    void PublishChanges() const;
    void PublishText() const;

    mutable std::mutex _mutex;
    IniText _text;                                     // guarded by the mutex
    int _holds = 0;                                    // the holder's, guarded by the mutex
    std::atomic<std::thread::id> _holder{};            // changed under the mutex; none where nothing is held back
    mutable std::atomic<bool> _isAhead{false};         // changed under the mutex: _text has what readers are to see
    mutable Published<IniText> _published{IniText()};  // published to under the mutex
};

}  // namespace Quern

#endif
