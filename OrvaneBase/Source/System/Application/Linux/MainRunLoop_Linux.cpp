#include "System/Application/MainRunLoop.h"

#include <sys/epoll.h>
#include <sys/timerfd.h>
#include <unistd.h>
#include <uv.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <future>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "Base/Assert.h"
#include "Base/XLog.h"
#include "System/Thread/Mutex.h"

namespace Quern {
namespace {

// Frees what holds a libuv handle once libuv is done with it.
struct CloseHandle {
    template <typename Holder>
    void operator()(Holder* holder) const {
        if (!holder->isOpen) {
            delete holder;
            return;
        }
        uv_close(reinterpret_cast<uv_handle_t*>(&holder->handle),
                 [](uv_handle_t* handle) { delete static_cast<Holder*>(handle->data); });
    }
};

// On libuv. Its loop and all that hangs on it is touched on the main thread only: other threads queue what they want
// and wake the loop.
class UvMainRunLoop final : public MainRunLoop {
public:
    UvMainRunLoop();

    bool IsMainThread() override { return gettid() == getpid(); }
    void Post(Call call) override;
    void PostAndWait(const Call& call) override;
    Id StartTimer(long long milliseconds, Call call) override;
    void CancelTimer(Id timer) override;
    Id Watch(int descriptor, int events, Handler handler) override;
    void Unwatch(Id watch) override;
    bool Run() override { return RunLoop(UV_RUN_DEFAULT); }
    void Stop() override;
    int Descriptor() override;
    void RunPending() override { RunLoop(UV_RUN_NOWAIT); }

private:
    struct Timer {
        uv_timer_t handle{};
        bool isOpen = false;  // whether libuv knows the handle
        UvMainRunLoop* loop = nullptr;
        Id id = 0;
        Call call;
    };
    struct Watcher {
        uv_poll_t handle{};
        bool isOpen = false;
        UvMainRunLoop* loop = nullptr;
        Id id = 0;
        Handler handler;
    };

    void Change(Call change);
    void ApplyChanges();
    void PerformPosted();
    bool RunLoop(uv_run_mode mode);

    void AddTimer(Id id, uint64_t due, Call call);
    void Fire(Id id);
    void AddWatcher(Id id, int descriptor, int events, Handler handler);
    void TellFailed(Id id);

    void MakeDescriptor();
    void ArmDescriptor();

    // Main thread.
    uv_loop_t _loop;
    bool _isInside = false;  // inside uv_run
    std::map<Id, std::unique_ptr<Timer, CloseHandle>> _timers;
    std::map<Id, std::unique_ptr<Watcher, CloseHandle>> _watchers;
    int _descriptor = -1;  // once a host embeds the loop: epoll over libuv's descriptor and _alarm
    int _alarm = -1;       // timerfd

    // Any thread.
    uv_async_t _wake;
    std::atomic<Id> _nextId{1};
    CMutex _mutex;
    std::vector<Call> _posted ORVANE_GUARDED_BY(_mutex);
    std::vector<Call> _changes ORVANE_GUARDED_BY(_mutex);  // to timers and watchers; they run none of the callers' code
};

UvMainRunLoop::UvMainRunLoop() {
    ORVANE_ASSERT(uv_loop_init(&_loop) == 0);
    _wake.data = this;
    const auto onWake = [](uv_async_t* wake) { static_cast<UvMainRunLoop*>(wake->data)->PerformPosted(); };
    ORVANE_ASSERT(uv_async_init(&_loop, &_wake, onWake) == 0);
}

void UvMainRunLoop::Post(Call call) {
    if (!call) return;
    {
        const CCritical guard(&_mutex);
        _posted.push_back(std::move(call));
    }
    uv_async_send(&_wake);
}

void UvMainRunLoop::PostAndWait(const Call& call) {
    if (!call) return;
    if (IsMainThread()) {
        call();
        return;
    }
    const auto done = std::make_shared<std::promise<void>>();  // the waiter may be gone before set_value has returned
    const std::future<void> performed = done->get_future();
    Post([&call, done] {
        call();
        done->set_value();
    });
    performed.wait();
}

void UvMainRunLoop::Stop() {
    Post([this] { uv_stop(&_loop); });
}

// Takes a change up at once on the main thread, behind what other threads have queued before.
void UvMainRunLoop::Change(Call change) {
    {
        const CCritical guard(&_mutex);
        _changes.push_back(std::move(change));
    }
    if (!IsMainThread()) {
        uv_async_send(&_wake);
        return;
    }
    ApplyChanges();
    if (!_isInside) ArmDescriptor();
}

void UvMainRunLoop::ApplyChanges() {
    std::vector<Call> changes;
    {
        const CCritical guard(&_mutex);
        changes.swap(_changes);
    }
    for (const Call& change : changes)
        change();
}

// Performs what is queued by now; what these calls post waits for the next turn, so that timers and descriptors get
// theirs.
void UvMainRunLoop::PerformPosted() {
    std::vector<Call> posted;
    {
        const CCritical guard(&_mutex);
        posted.swap(_posted);
    }
    ApplyChanges();
    for (Call& call : posted)
        std::exchange(call, nullptr)();
}

bool UvMainRunLoop::RunLoop(uv_run_mode mode) {
    if (!IsMainThread() || _isInside) return false;
    _isInside = true;
    uv_run(&_loop, mode);
    _isInside = false;
    ArmDescriptor();
    return true;
}

MainRunLoop::Id UvMainRunLoop::StartTimer(long long milliseconds, Call call) {
    constexpr long long kFarthest = 1000LL * 60 * 60 * 24 * 365 * 100;
    const Id id = _nextId.fetch_add(1, std::memory_order_relaxed);
    const auto now = std::chrono::ceil<std::chrono::milliseconds>(std::chrono::steady_clock::now().time_since_epoch());
    const uint64_t due = static_cast<uint64_t>(now.count() + std::clamp(milliseconds, 0LL, kFarthest));
    Change([this, id, due, call = std::move(call)] { AddTimer(id, due, call); });
    return id;
}

void UvMainRunLoop::CancelTimer(Id timer) {
    Change([this, timer] { _timers.erase(timer); });
}

// `due` is a time of libuv's clock, which is the steady clock rounded down to milliseconds.
void UvMainRunLoop::AddTimer(Id id, uint64_t due, Call call) {
    std::unique_ptr<Timer, CloseHandle> timer(new Timer{.loop = this, .id = id, .call = std::move(call)});
    uv_timer_init(&_loop, &timer->handle);
    timer->handle.data = timer.get();
    timer->isOpen = true;
    uv_update_time(&_loop);
    const uint64_t now = uv_now(&_loop);
    const auto onDue = [](uv_timer_t* handle) {
        const Timer* const due = static_cast<Timer*>(handle->data);
        due->loop->Fire(due->id);
    };
    uv_timer_start(&timer->handle, onDue, due > now ? due - now : 0, 0);
    _timers.emplace(id, std::move(timer));
}

void UvMainRunLoop::Fire(Id id) {
    const auto timer = _timers.extract(id);
    if (const Call call = std::move(timer.mapped()->call)) call();
}

MainRunLoop::Id UvMainRunLoop::Watch(int descriptor, int events, Handler handler) {
    const Id id = _nextId.fetch_add(1, std::memory_order_relaxed);
    Change(
        [this, id, descriptor, events, handler = std::move(handler)] { AddWatcher(id, descriptor, events, handler); });
    return id;
}

void UvMainRunLoop::Unwatch(Id watch) {
    Change([this, watch] { _watchers.erase(watch); });
}

void UvMainRunLoop::AddWatcher(Id id, int descriptor, int events, Handler handler) {
    std::unique_ptr<Watcher, CloseHandle> watcher(new Watcher{.loop = this, .id = id, .handler = std::move(handler)});
    watcher->isOpen = descriptor >= 0 && uv_poll_init(&_loop, &watcher->handle, descriptor) == 0;
    watcher->handle.data = watcher.get();
    const auto onReady = [](uv_poll_t* handle, int status, int ready) {
        const Watcher* const watcher = static_cast<Watcher*>(handle->data);
        if (status != 0)
            watcher->loop->TellFailed(watcher->id);
        else if (watcher->handler)
            watcher->handler(((ready & UV_READABLE) ? kReadable : 0) | ((ready & UV_WRITABLE) ? kWritable : 0));
    };
    const int asked = ((events & kReadable) ? UV_READABLE : 0) | ((events & kWritable) ? UV_WRITABLE : 0);
    if (!watcher->isOpen || uv_poll_start(&watcher->handle, asked, onReady) != 0) Post([this, id] { TellFailed(id); });
    _watchers.emplace(id, std::move(watcher));
}

void UvMainRunLoop::TellFailed(Id id) {
    const auto found = _watchers.find(id);
    if (found == _watchers.end()) return;
    const Handler handler = std::move(found->second->handler);
    _watchers.erase(found);
    if (handler) handler(kFailed);
}

int UvMainRunLoop::Descriptor() {
    if (_descriptor < 0) MakeDescriptor();
    return _descriptor;
}

void UvMainRunLoop::MakeDescriptor() {
    const int descriptor = epoll_create1(EPOLL_CLOEXEC);
    const int alarm = timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK);
    epoll_event readable{};
    readable.events = EPOLLIN;
    if (descriptor < 0 || alarm < 0 || epoll_ctl(descriptor, EPOLL_CTL_ADD, uv_backend_fd(&_loop), &readable) != 0 ||
        epoll_ctl(descriptor, EPOLL_CTL_ADD, alarm, &readable) != 0) {
        ORVANE_LOG_ERROR("MainRunLoop: no descriptor to poll: %d", errno);
        if (descriptor >= 0) close(descriptor);
        if (alarm >= 0) close(alarm);
        return;
    }
    _descriptor = descriptor;
    _alarm = alarm;
    ArmDescriptor();
}

// libuv's own descriptor tells of posted calls and ready descriptors. The alarm tells when its next timer is due, or,
// at once, that it has registrations to hand to the kernel, which it does only inside a run.
void UvMainRunLoop::ArmDescriptor() {
    if (_descriptor < 0) return;
    uv_update_time(&_loop);
    const int wait = uv_backend_timeout(&_loop);  // milliseconds; -1: nothing is going to be due
    itimerspec when{};
    if (wait > 0) {
        when.it_value.tv_sec = wait / 1000;
        when.it_value.tv_nsec = (wait % 1000) * 1000000L;
    } else if (wait == 0) {
        when.it_value.tv_nsec = 1;
    }
    timerfd_settime(_alarm, 0, &when, nullptr);
}

}  // namespace

template <>
std::shared_ptr<MainRunLoop> Seam<MainRunLoop>::MakeBuiltIn() {
    return std::make_shared<UvMainRunLoop>();
}

}  // namespace Quern
