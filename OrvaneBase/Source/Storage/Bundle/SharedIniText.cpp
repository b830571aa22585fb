#include "Storage/Bundle/SharedIniText.h"

namespace Quern {

void SharedIniText::HoldBack() {
    const std::lock_guard<std::mutex> guard(_mutex);
    if (_holds > 0 && !IsHolder()) return;
    PublishChanges();  // what was changed before is for everybody
    _holder.store(std::this_thread::get_id(), std::memory_order_relaxed);
    ++_holds;
}

void SharedIniText::Release() {
    const std::lock_guard<std::mutex> guard(_mutex);
    if (!IsHolder() || --_holds > 0) return;
    _holder.store(std::thread::id(), std::memory_order_relaxed);
    PublishText();  // and _isAhead is not set for it: readers would wait here for the mutex
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
