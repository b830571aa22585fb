#include "System/Thread/ThreadBase.h"

#include <ctime>

#include "Base/XLog.h"
#include "System/Thread/ThreadName.h"

namespace Quern {

CThreadBase::CThreadBase() : CTargetBase(false) {
    if (pthread_create(&_thread, nullptr, onThreadProc, this) != 0) _thread = {};
}

CThreadBase::~CThreadBase() = default;

void CThreadBase::Start() {
    ORVANE_LOG_INFO("Thread: CThreadBase: Start:%p", static_cast<void*>(this));
    m_bThreadRun.Set(true);
    _startCame.store(true, std::memory_order_release);
    Resume(true);
    _startEvent.Set();
    Sleep(0);
}

void CThreadBase::Stop() {
    if (!m_bThreadRun.Get()) return;
    m_bThreadRun.Set(false);
    _pause.Set(false);
    _startEvent.Set();
    _pauseEvent.Set();
}

void CThreadBase::Pause() {
    if (!m_bThreadRun.Get() || isSelfDeleting()) return;
    _pause.Set(true);
    _resume.Set(true);
}

void CThreadBase::Resume(bool yield) {
    ORVANE_LOG_INFO("CThreadBase::Resume");
    if (!m_bThreadRun.Get() || isSelfDeleting()) {
        ORVANE_LOG_ERROR("Thread is not running..");
        return;
    }
    _resume.Set(true);
    _pause.Set(false);
    _startEvent.Set();
    _pauseEvent.Set();
    if (yield) Sleep(0);
}

void CThreadBase::AddSelector(void (CTargetBase::*member)()) {
    CAFunctionSelector selector;
    selector.Set(this, member);
    const CCritical guard(&_selectorLock);
    _selectors.Push(selector);
}

void CThreadBase::AddSelector(void (CTargetBase::*member)(void*), void* data) {
    CAFunctionSelector selector;
    selector.Set(this, member, data);
    const CCritical guard(&_selectorLock);
    _selectors.Push(selector);
}

void CThreadBase::Destroy(CThreadBase** thread, bool selfDelete) {
    if (thread && *thread) {
        CThreadBase* const object = *thread;
        ORVANE_LOG_EVENT("CThreadBase::Destroy begin:%p", static_cast<void*>(object));
        if (selfDelete) {
            object->_destroyerInside.store(true, std::memory_order_relaxed);
            const bool ended = !object->markForSelfDelete();
            ORVANE_LOG_INFO("CThreadBase::Destroy m_bThreadExit:%d", ended);
            if (ended) {
                Sleep(10);
                delete object;
            } else {
                object->Stop();
                object->_destroyerInside.store(false, std::memory_order_release);
            }
        } else {
            object->Stop();
            object->_exitEvent.Wait();
        }
    }
    if (thread) *thread = nullptr;
    ORVANE_LOG_EVENT("CThreadBase::Destroy end");
}

// False if the thread has ended and left the object behind.
bool CThreadBase::markForSelfDelete() {
    End end = End::kOpen;
    return _end.compare_exchange_strong(end, End::kSelfDelete, std::memory_order_acq_rel) || end == End::kSelfDelete;
}

bool CThreadBase::Sleep(int milliseconds) {
    timespec time;
    time.tv_sec = milliseconds / 1000;
    time.tv_nsec = (milliseconds % 1000) * 1000000L;
    return nanosleep(&time, nullptr) == 0;
}

void* CThreadBase::onThreadProc(void* object) {
    ORVANE_LOG_INFO("Thread: CThreadBase: OnThreadProc, %p", object);
    set_thread_name("CThreadBase");
    pthread_detach(pthread_self());
    Sleep(50);  // until the constructor of the subclass, which runs after the one that made this thread, has finished
    CThreadBase* const self = static_cast<CThreadBase*>(object);
    if (!self) pthread_exit(nullptr);

    self->_state.store(kStarting, std::memory_order_relaxed);
    if (self->waitForStart()) {
        self->_state.store(kRunning, std::memory_order_relaxed);
        self->OnThreadStart();
        ORVANE_LOG_INFO("Thread: CThreadBase: OnThreadProc before Running");
    } else {
        ORVANE_LOG_EVENT("Thread: CThreadBase: OnThreadProc not run while starting..");
    }
    self->runLoop();
    self->_state.store(kExited, std::memory_order_relaxed);
    self->OnThreadExit();
    self->_exitEvent.Set();

    ORVANE_LOG_EVENT("Thread: CThreadBase: OnThreadProc(%p) final Exit...", object);
    End end = End::kOpen;
    if (!self->_end.compare_exchange_strong(end, End::kThreadExit, std::memory_order_acq_rel)) {
        Sleep(10);
        while (self->_destroyerInside.load(std::memory_order_acquire))
            Sleep(1);
        delete self;
    }
    pthread_exit(nullptr);
}

// Whether the thread is to run.
bool CThreadBase::waitForStart() {
    constexpr int kPolls = 10;
    const auto started = [this] { return m_bThreadRun.Get() || _startCame.load(std::memory_order_acquire); };
    if (!m_bThreadRun.Get()) {
        ORVANE_LOG_INFO("Thread: CThreadBase: OnThreadProc m_bThreadRun is false");
        for (int poll = 0; poll < kPolls && !started(); ++poll)
            Sleep(20);
        if (!started()) {
            ORVANE_LOG_INFO("Thread: CThreadBase: OnThreadProc before start wait");
            while (!started())
                _startEvent.WaitUnless(started);
        }
        ORVANE_LOG_INFO("Thread: CThreadBase: OnThreadProc after start");
    }
    return m_bThreadRun.Get();
}

void CThreadBase::runLoop() {
    while (m_bThreadRun.Get()) {
        if (_pause.Get()) {
            if (!pauseThread()) return;
        } else if (_resume.Get()) {
            _resume.Set(false);
            OnThreadResume();
        }
        _state.store(kRunning, std::memory_order_relaxed);
        if (!m_bThreadRun.Get()) {
            ORVANE_LOG_INFO("Thread: CThreadBase: OnThreadProc ThRun");
            return;
        }
        if (_pause.Get()) {
            ORVANE_LOG_INFO("Thread: CThreadBase: OnThreadProc Pause");
        } else {
            OnThreadProc();
            runSelectors();
        }
    }
}

// Pauses until a resume; false if the thread is to end instead.
bool CThreadBase::pauseThread() {
    _state.store(kPaused, std::memory_order_relaxed);
    OnThreadPause();
    ORVANE_LOG_INFO("Thread: CThreadBase: OnThreadProc before pause wait");
    _pauseEvent.Reset();
    _pauseEvent.WaitUnless([this] { return !_pause.Get() || !m_bThreadRun.Get(); });
    ORVANE_LOG_INFO("Thread: CThreadBase: OnThreadProc after  pause wait");
    _resume.Set(false);
    if (!m_bThreadRun.Get()) return false;
    OnThreadResume();
    return true;
}

void CThreadBase::runSelectors() {
    for (;;) {
        CAFunctionSelector selector;
        {
            const CCritical guard(&_selectorLock);
            if (!_selectors.Pop(selector)) return;
        }
        ORVANE_LOG_INFO("runSelectors has selector");
        selector.Perform();
    }
}

}  // namespace Quern
