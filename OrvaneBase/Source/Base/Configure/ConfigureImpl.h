// The client of the configuration server.
//
// It asks the server at a fixed gap, keeps the answer in the file "RemoteConfig.config" of the cache folder, and tells
// the observer of each module which keys have come. A request that fails is repeated after 10 s as long as its retries
// last, and when the network is back. Docs/DevServer.md has the request and the answer.
//
//     kUninitialized --first StartOnce--> kInited --Request--> kRequesting
//     kRequesting --an answer, whatever it holds--> kFinished
//     kRequesting --transport error, or a URL that cannot be asked--> kFailed
//     kRequesting --an answer that the URL's change or Clear made stale--> kInited
//     kInited, kFinished, kFailed --Request--> kRequesting
//
// A request is never doubled: while one is under way, all that would start another does nothing. So a URL that changes
// meanwhile is asked at the next occasion, and not at once.
//
// Locks. Before _mutex come WWWTaskBase::_sMutex and then a task's own, under which completions arrive; CNetwork's,
// under which changes of the network do; and the loggers' service's, which adds observers. So under _mutex no task is
// made, listened to or destroyed, no network observer added or removed, no timer started or stopped (a start takes
// 50 ms), and no code of a plugin or an observer runs. Under it lie the bundles' locks, whose saves wait for the disk,
// QuernCommon's, ConfigureReport's, a task's _stateMutex, the URL session's, and the log's.
//
// Between CNetwork's and _sMutex there is no order: a game's network observer may destroy a task, while a listener of a
// task makes the client's first call. So the client takes neither under the other. It enters the list of the
// network's observers, and leaves it, by way of the main run loop, with no lock held. A removal that comes late is
// harmless, since the object stays in memory and a released one does nothing. It enters at each StartOnce, since a
// network that was taken down has forgotten it.
//
// Reads do not take _mutex, so they wait for none of that: the bundle answers them by itself.
#ifndef ORVANE_BASE_CONFIGURE_CONFIGURE_IMPL_H
#define ORVANE_BASE_CONFIGURE_CONFIGURE_IMPL_H

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <thread>

#include "Base/Configure/Configure.h"
#include "Base/Container/Value.h"
#include "Orvane/DataTask.h"
#include "Orvane/INetwork.h"
#include "Storage/Bundle/BundleImpl.h"
#include "System/Thread/Mutex.h"
#include "System/Thread/Timer.h"

namespace Orvane {

// Any thread. Never destroyed: whoever held it at its release may still be inside it, and reads go on.
class ConfigureImpl final : public Configure, public Quern::CNetworkObserver, public Quern::DataTask::Listener {
public:
    // Over the client's file. Ends the process if there is no cache folder.
    ConfigureImpl();
    // Over another store. Null stands for the manifest alone, and for nothing to ask or to tell.
    explicit ConfigureImpl(std::unique_ptr<Quern::IniBundle> store);

    // From now on nothing is asked, told or taken; what is in flight is given up, and the timers are stopped. Waits for
    // an answer that is being delivered on another thread, but not for a request that gathers what it sends: that one
    // may be inside the data plugin a moment longer, and then sends nothing. A second call does nothing.
    void Release();
    // Puts this client at the head of the chain of those that stay in memory, for good.
    void Keep(std::atomic<ConfigureImpl*>& chain) { _keptBefore = chain.exchange(this, std::memory_order_acq_rel); }

    void Start() override;
    void StartOnce() override;
    void SetUrl(const char* url) override;
    void Clear() override;
    void AddObserver(const char* name, ConfigureObserver* observer) override;
    void RemoveObserver(const char* name) override;

    int GetInt(const char* section, const char* key, int defaultValue) override;
    long long GetLong(const char* section, const char* key, long long defaultValue) override;
    double GetDouble(const char* section, const char* key, double defaultValue) override;
    bool GetBool(const char* section, const char* key, bool defaultValue) override;
    Quern::AString GetString(const char* section, const char* key, const char* defaultValue) override;

    // On a thread of the URL session, under the task's locks.
    void OnDataTaskFinished(Quern::DataTask* task, Quern::WWWErrorCode error, int httpStatus, const char* data,
                            long long length) override;
    // On the thread that tells changes of the network, under its lock.
    void OnNetworkStateChanged(Quern::ANetworkState state) override;

private:
    enum State : int32_t { kUninitialized = 0, kInited = 1, kRequesting = 2, kFinished = 3, kFailed = 4 };
    // What is left to do about a failed request once the mutex is released.
    struct Retry {
        bool isDue = false;
        unsigned int staleTimer = 0;
    };

    ~ConfigureImpl() override = default;

    void _Init() ORVANE_REQUIRES(_mutex);
    void _ObserveNetwork();

    void Request();
    bool _MayRequest() ORVANE_REQUIRES(_mutex);
    std::string _RequestUrl(const std::string& comParams) const ORVANE_REQUIRES(_mutex);
    void _Send(const std::string& url) ORVANE_REQUIRES(_mutex);
    void _MakeTaskAndSend(const std::string& url);

    Retry _TakeFailure(Quern::WWWErrorCode error, int costTime) ORVANE_REQUIRES(_mutex);
    Quern::Value _TakeAnswer(const char* data, size_t length, int costTime) ORVANE_REQUIRES(_mutex);
    void _Store(const Quern::Value& modules) ORVANE_REQUIRES(_mutex);
    void _RetryRequest(const Retry& retry);
    void _TellObservers(const Quern::Value& modules);
    void OnConfigureRefreshed(const char* moduleName, IStringIterator* keys);
    bool _IsReleased();

    void _StartTimer(Quern::CTimer& timer, unsigned int ConfigureImpl::*kept, unsigned long long milliseconds,
                     bool repeat, Quern::CTimerImp::Callback callback);
    static void ConfigureInnerStart(unsigned int timerId, void* configure);
    static void ConfigureRetryRequest(unsigned int timerId, void* configure);

    Quern::CTimer _startTimer;  // the repeating fetch
    unsigned int _startTimerId ORVANE_GUARDED_BY(_mutex) = 0;
    Quern::CTimer _retryTimer;
    unsigned int _retryTimerId ORVANE_GUARDED_BY(_mutex) = 0;
    std::string _openID ORVANE_GUARDED_BY(_mutex);
    std::string _channelID ORVANE_GUARDED_BY(_mutex);
    std::string _url ORVANE_GUARDED_BY(_mutex);     // of the server, without the path
    int32_t _ruleID ORVANE_GUARDED_BY(_mutex) = 0;  // the highest that this process has seen
    std::atomic<int32_t> _state{kUninitialized};    // changed under _mutex; the network's change reads it without
    Quern::DataTask* _dataTask ORVANE_GUARDED_BY(_mutex) = nullptr;  // made at the first request; its URL likewise
    std::map<std::string, ConfigureObserver*> _observers ORVANE_GUARDED_BY(_mutex);  // by module; not owned
    Quern::CMutex _mutex{true};
    // Not freed, since a bundle that goes leaves its file in plain text.
    Quern::BundleImpl* _bundle;  // the same from the constructor on
    int32_t _maxRetryCount ORVANE_GUARDED_BY(_mutex) = 0;
    int32_t _retryCount ORVANE_GUARDED_BY(_mutex) = 2;     // left
    uint64_t _requestTick ORVANE_GUARDED_BY(_mutex) = 0;   // microseconds since the epoch, when the last one was sent
    bool _ignoreResult ORVANE_GUARDED_BY(_mutex) = false;  // what is in flight is stale
    bool _isReleased ORVANE_GUARDED_BY(_mutex) = false;
    std::atomic<bool> _isObservingPosted{false};       // on its way to the network's observers
    std::atomic<std::thread::id> _deliveringThread{};  // inside observers and report
    ConfigureImpl* _keptBefore = nullptr;
};

// The quit callback: releases the process's client. The next Configure::GetInstance makes another one.
void ReleaseConfigureInstance();

}  // namespace Orvane

#endif
