#include "System/Application/NotificationCenter.h"

#include <cstdint>
#include <string>
#include <vector>

#include "Base/RunTimeClass.h"
#include "System/Thread/Mutex.h"

namespace Quern {
namespace {

class ProcessNotificationCenter final : public NotificationCenter {
public:
    void AddObserver(void* observer, OrvaneNotificationFunction function, const char* name) override {
        if (!function || !name) return;
        const CCritical guard(&_mutex);
        _entries.push_back({++_lastId, observer, function, name});
    }

    void RemoveObserver(void* observer, const char* name) override {
        const CCritical guard(&_mutex);
        std::erase_if(_entries, [observer, name](const Entry& entry) {
            return entry.observer == observer && (!name || entry.name == name);
        });
    }

    void Post(const char* name, void* object) override {
        if (!name) return;
        Entry entry{};
        const uint64_t last = LastId();
        while (Next(name, last, entry))
            entry.function(entry.observer, name, object);
    }

private:
    struct Entry {
        uint64_t id;  // rises in the order of entry
        void* observer;
        OrvaneNotificationFunction function;
        std::string name;
    };

    uint64_t LastId() {
        const CCritical guard(&_mutex);
        return _lastId;
    }

    // Replaces `entry` by the one of that name which comes next, up to the id `last`. False if there is none.
    bool Next(const char* name, uint64_t last, Entry& entry) {
        const CCritical guard(&_mutex);
        for (const Entry& candidate : _entries) {
            if (candidate.id <= entry.id || candidate.id > last || candidate.name != name) continue;
            entry = candidate;
            return true;
        }
        return false;
    }

    CMutex _mutex;
    std::vector<Entry> _entries ORVANE_GUARDED_BY(_mutex);
    uint64_t _lastId ORVANE_GUARDED_BY(_mutex) = 0;
};

void* PerformAdd(orvane_object*, const char*, void* const* arguments) {
    if (!arguments) return nullptr;
    const auto function = reinterpret_cast<OrvaneNotificationFunction>(arguments[1]);
    NotificationCenter::Current().AddObserver(arguments[0], function, static_cast<const char*>(arguments[2]));
    return nullptr;
}

void* PerformRemove(orvane_object*, const char*, void* const* arguments) {
    if (arguments) NotificationCenter::Current().RemoveObserver(arguments[0], static_cast<const char*>(arguments[1]));
    return nullptr;
}

}  // namespace

template <>
std::shared_ptr<NotificationCenter> Seam<NotificationCenter>::MakeBuiltIn() {
    return std::make_shared<ProcessNotificationCenter>();
}

void RegisterNotificationCenterClass() {
    RegisterRunTimeClass("OrvaneNotificationCenter", {},
                         {{"addObserver:function:name:", PerformAdd}, {"removeObserver:name:", PerformRemove}});
}

}  // namespace Quern
