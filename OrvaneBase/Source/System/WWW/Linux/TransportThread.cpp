#include "System/WWW/Linux/TransportThread.h"

#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <system_error>
#include <thread>
#include <utility>

#include "Base/Linux/CryptoAtExit.h"
#include "Base/XLog.h"
#include "System/Application/MainRunLoop.h"
#include "System/Thread/ThreadName.h"

namespace Quern {
namespace {

// In milliseconds. As a rule the transport stands still at once; only the first TLS connection, which reads all the
// certificates, and libraries that are just being loaded take longer.
constexpr int kLongestWaitAtExit = 1000;

// Those that stand still at the process's end. Never destroyed.
struct Registry {
    std::mutex mutex;
    std::vector<std::weak_ptr<TransportThread>> threads;
};

Registry& TheRegistry() {
    static auto* const registry = new Registry;
    return *registry;
}

// A thread with every signal blocked: the host's handlers run on the host's threads, and a broken connection is an
// error and no SIGPIPE.
void StartDetached(std::function<void()> body) {
    sigset_t all, before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    try {
        std::thread(std::move(body)).detach();
    } catch (...) {
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
        throw;
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

}  // namespace

void TransportThread::Do(Work work) {
    std::string failure;
    {
        const std::lock_guard<std::mutex> guard(_mutex);
        _work.push_back(std::move(work));
        if (!_isRunning)
            failure = Start();
        else if (_work.size() == 1 && _transport)
            _transport->Wake();
    }
    if (failure.empty()) return;
    ORVANE_CONSOLE(kLogError, "no thread for HTTP: %s", failure.c_str());
    MainRunLoop::Current().Post([self = shared_from_this()] { self->FailWork(); });
}

// On the main thread, with no lock held, since whoever asked may be told. What a later try took is not here any more.
void TransportThread::FailWork() {
    std::vector<Work> work;
    bool isCompleting = false;
    {
        const std::lock_guard<std::mutex> guard(_mutex);
        if (_isRunning) return;
        work.swap(_work);
        isCompleting = _isCompleting;
    }
    const std::unique_ptr<Transport> transport = NoTransport("no thread for HTTP");
    for (Work& item : work)
        std::exchange(item, nullptr)(*transport);
    if (!isCompleting) _completions.RunPosted();
}

// Under _mutex, which the new thread waits for. What failed, "" otherwise.
std::string TransportThread::Start() {
    StandStillAtExit();
    try {
        if (!_isCompleting) StartDetached([self = shared_from_this()] { self->_completions.Run(); });
        _isCompleting = true;
        StartDetached([self = shared_from_this()] { self->Run(); });
        _isRunning = true;
        return "";
    } catch (const std::system_error& error) {
        return error.what();
    }
}

void TransportThread::Run() {
    set_thread_name("UrlTransport");
    KeepCryptoAtExit();
    const std::unique_ptr<Transport> transport = OpenTransport(_options);
    StandStillAtExit();
    {
        const std::lock_guard<std::mutex> guard(_mutex);
        _transport = transport.get();
    }
    for (std::vector<Work> work; TakeWork(work); work.clear()) {
        for (Work& item : work)
            std::exchange(item, nullptr)(*transport);
        transport->Step();
    }
}

// False at the end. Standing still, it does not come back.
bool TransportThread::TakeWork(std::vector<Work>& work) {
    std::unique_lock<std::mutex> guard(_mutex);
    if (_stop == Stop::kNo) {
        work.swap(_work);
        return true;
    }
    const bool isEnd = _stop == Stop::kEnd;
    _transport = nullptr;
    _hasStopped = true;
    _stopped.notify_all();
    guard.unlock();
    while (!isEnd)
        pause();
    return false;
}

void TransportThread::AskToStop(Stop stop, int milliseconds) {
    _completions.Stop();
    std::vector<Work> dropped;  // what no thread could be started for
    std::unique_lock<std::mutex> guard(_mutex);
    if (!_isRunning) dropped.swap(_work);
    if (!_isRunning || _stop != Stop::kNo) return;
    _stop = stop;
    if (_transport) _transport->Wake();
    _stopped.wait_for(guard, std::chrono::milliseconds(milliseconds), [this] { return _hasStopped; });
}

void TransportThread::End() {
    constexpr int kLongestWait = 10000;
    AskToStop(Stop::kEnd, kLongestWait);
}

// What is entered last runs first. So this is entered before the libraries beneath the transport are opened, for an end
// meanwhile, and again once they are initialised, so that it runs before they take themselves down.
void TransportThread::StandStillAtExit() {
    {
        Registry& registry = TheRegistry();
        const std::lock_guard<std::mutex> guard(registry.mutex);
        registry.threads.push_back(weak_from_this());
    }
    std::atexit([] {
        std::vector<std::weak_ptr<TransportThread>> threads;
        {
            const std::lock_guard<std::mutex> guard(TheRegistry().mutex);
            threads.swap(TheRegistry().threads);
        }
        for (const auto& thread : threads)
            if (const auto running = thread.lock()) running->AskToStop(Stop::kStandStill, kLongestWaitAtExit);
    });
}

}  // namespace Quern
