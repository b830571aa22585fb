#include <algorithm>
#include <utility>
#include <vector>

#include "Orvane/OrvaneCore.h"
#include "System/Thread/Mutex.h"

namespace {

using QuitCallback = void (*)();

// Entries come from any thread, also while the list is run. The lock is a leaf: callbacks are called outside it.
class QuitList {
public:
    void Add(QuitCallback callback) {
        const Quern::CCritical guard(&_lock);
        if (std::find(_waiting.begin(), _waiting.end(), callback) != _waiting.end()) return;
        // A callback that was called in this run may be needed again: an operation that was under way has queued work,
        // and so the queue that had been ended came back. That is granted once a run, so that an operation that queues
        // its own successor does not keep the run going for ever.
        Entries& list = std::count(_called.begin(), _called.end(), callback) > 1 ? _next : _waiting;
        if (std::find(list.begin(), list.end(), callback) == list.end()) list.push_back(callback);
    }

    void Run() {
        if (!Begin()) return;
        while (const QuitCallback callback = TakeNext())
            callback();
    }

private:
    using Entries = std::vector<QuitCallback>;

    // False if a run is under way: that one then calls everything.
    bool Begin() {
        const Quern::CCritical guard(&_lock);
        return !std::exchange(_running, true);
    }
    // Null when none waits any more, and the run is over with that.
    QuitCallback TakeNext() {
        const Quern::CCritical guard(&_lock);
        if (_waiting.empty()) {
            _waiting = std::exchange(_next, {});
            _called.clear();
            _running = false;
            return nullptr;
        }
        const QuitCallback callback = _waiting.front();
        _waiting.erase(_waiting.begin());
        _called.push_back(callback);
        return callback;
    }

    Quern::CMutex _lock;
    Entries _waiting ORVANE_GUARDED_BY(_lock);       // in order of first registration
    Entries _called ORVANE_GUARDED_BY(_lock);        // in this run
    Entries _next ORVANE_GUARDED_BY(_lock);          // for the next run
    bool _running ORVANE_GUARDED_BY(_lock) = false;  // whether a run is under way
};

// Never destroyed: threads outlive static objects.
QuitList& List() {
    static QuitList* list = new QuitList;
    return *list;
}

}  // namespace

void AddApplicationQuitCallback(QuitCallback callback) {
    if (callback) List().Add(callback);
}

void OnApplicationQuit() {
    List().Run();
}
