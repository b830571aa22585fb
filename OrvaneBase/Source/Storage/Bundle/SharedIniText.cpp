#include "Storage/Bundle/SharedIniText.h"

namespace Quern {

void SharedIniText::HoldBack() {
    const std::lock_guard<std::mutex> guard(_mutex);
    if (_holds > 0 && !IsHolder()) return;
    PublishChanges();  // what stands so far is not the holder's to hold back
    _holder.store(std::this_thread::get_id(), std::memory_order_relaxed);
    ++_holds;
}

void SharedIniText::Release() {
    const std::lock_guard<std::mutex> guard(_mutex);
    if (!IsHolder() || --_holds > 0) return;
    _holder.store(std::thread::id(), std::memory_order_relaxed);
    PublishText();  // without a word of it before, which would have readers wait for it here
}

IniText SharedIniText::Publish() {
    const std::lock_guard<std::mutex> guard(_mutex);
    PublishChanges();
    return _text;
}

void SharedIniText::PublishChanges() const {
    if (_isAhead.load(std::memory_order_relaxed)) PublishText();
}

void SharedIniText::PublishText() const {
    IniText version = _text;
    version.IndexRepeatedSections();
    _published.Publish(std::move(version));
    _isAhead.store(false, std::memory_order_release);
}

}  // namespace Quern
