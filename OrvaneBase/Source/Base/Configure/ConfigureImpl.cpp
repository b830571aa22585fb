#include "Base/Configure/ConfigureImpl.h"

#include <json/json.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "Base/Assert.h"
#include "Base/CompactJson.h"
#include "Base/Configure/AnswerReader.h"
#include "Base/Configure/StringIterator.h"
#include "Base/Container/StringConversion.h"
#include "Base/CoreModule.h"
#include "Base/QuernCommon.h"
#include "Base/ReportHandler/ConfigureReport.h"
#include "Base/XLog.h"
#include "Serializer/URLEncoder/URLEncoder.h"
#include "Storage/Bundle/BundleFactory.h"
#include "Storage/File/CPath.h"
#include "System/Application/MainRunLoop.h"
#include "System/Network/CNetwork.h"
#include "System/Thread/Time.h"
#include "System/WWW/Task/WWW.h"

namespace Orvane {
namespace {

using namespace Quern;

constexpr char kUrlKey[] = "RemoteConfigUrl";
constexpr char kGapKey[] = "RemoteConfigNextGap";
constexpr char kMaxRetryCountKey[] = "RemoteConfigMaxRetryCount";
constexpr char kRuleIdKey[] = "rule_id";
constexpr char kFileName[] = "RemoteConfig.config";
constexpr char kPath[] = "/cfgpush/getConfig?";
constexpr int kDefaultGap = 86400;  // seconds
constexpr int kDefaultMaxRetryCount = 3;
constexpr unsigned long long kRetryDelay = 10000;  // milliseconds

std::unique_ptr<IniBundle> OpenStore() {
    const char* const cache = CPath::GetCachePath();
    if (AString::IsNullOrEmpty(cache)) {
        ORVANE_CONSOLE(kLogError, "CachePath is empty, do not use bundle in JNI_ONLoad!!!");
        ORVANE_ASSERT(false);
    }
    AString path;
    CPath::GetSubPath(path, cache, kFileName);
    return std::make_unique<IniBundle>(path.c_str());
}

// Always with the id 0, whatever the client has seen: the server is not told.
std::string BusinessParameters() {
    Json::Value parameters(Json::objectValue);
    parameters[kRuleIdKey] = 0;
    return WriteCompactJson(parameters);
}

}  // namespace

ConfigureImpl::ConfigureImpl() : ConfigureImpl(OpenStore()) {}

ConfigureImpl::ConfigureImpl(std::unique_ptr<IniBundle> store) {
    _isReleased = !store;
    _bundle = new BundleImpl(std::move(store));
}

void ConfigureImpl::Release() {
    DataTask* task = nullptr;
    unsigned int startTimer = 0, retryTimer = 0;
    bool isObserving = false;
    {
        const CCritical guard(&_mutex);
        _isReleased = true;
        isObserving = _state != kUninitialized;
        task = std::exchange(_dataTask, nullptr);
        startTimer = std::exchange(_startTimerId, 0u);
        retryTimer = std::exchange(_retryTimerId, 0u);
    }
    _startTimer.StopTimer(startTimer);
    _retryTimer.StopTimer(retryTimer);
    if (task) {
        task->RemoveListener(this);
        task->Cancel();
        // An observer that takes the library down is inside a call of the task, which needs it until it returns.
        if (_deliveringThread.load() == std::this_thread::get_id())
            MainRunLoop::Current().Post([task] { WWW::Destroy(task); });
        else
            WWW::Destroy(task);
    }
    if (!isObserving) return;
    MainRunLoop::Current().Post([this] {
        if (CNetwork* const network = CNetwork::InstanceIfAny()) network->RemoveObserver(this);
    });
}

bool ConfigureImpl::_IsReleased() {
    const CCritical guard(&_mutex);
    return _isReleased;
}

int ConfigureImpl::GetInt(const char* section, const char* key, int defaultValue) {
    return _bundle->Get(section, key, defaultValue);
}

long long ConfigureImpl::GetLong(const char* section, const char* key, long long defaultValue) {
    return _bundle->Get(section, key, defaultValue);
}

// The store keeps no doubles but as texts.
double ConfigureImpl::GetDouble(const char* section, const char* key, double defaultValue) {
    double value = defaultValue;
    return str2double(_bundle->Get(section, key, "").c_str(), &value) ? value : defaultValue;
}

bool ConfigureImpl::GetBool(const char* section, const char* key, bool defaultValue) {
    return _bundle->Get(section, key, defaultValue);
}

AString ConfigureImpl::GetString(const char* section, const char* key, const char* defaultValue) {
    return _bundle->Get(section, key, defaultValue);
}

void ConfigureImpl::AddObserver(const char* name, ConfigureObserver* observer) {
    if (!name || !observer) return;
    const CCritical guard(&_mutex);
    _observers.emplace(name, observer);
}

void ConfigureImpl::RemoveObserver(const char* name) {
    if (!name) return;
    const CCritical guard(&_mutex);
    _observers.erase(name);
}

void ConfigureImpl::Start() {
    unsigned int staleTimer = 0;
    {
        const CCritical guard(&_mutex);
        if (_isReleased) return;
        staleTimer = std::exchange(_startTimerId, 0u);
    }
    if (staleTimer) _startTimer.StopTimer(staleTimer);
    const int gap = _bundle->Get(Quern::kCoreModule, kGapKey, kDefaultGap);
    StartOnce();
    _StartTimer(_startTimer, &ConfigureImpl::_startTimerId, 1000ULL * static_cast<unsigned int>(std::max(gap, 0)), true,
                ConfigureInnerStart);
}

// Where two threads start a timer at the same time, one timer is left; where the client is released meanwhile, none.
void ConfigureImpl::_StartTimer(CTimer& timer, unsigned int ConfigureImpl::*kept, unsigned long long milliseconds,
                                bool repeat, CTimerImp::Callback callback) {
    const unsigned int started = timer.StartTimer(milliseconds, repeat, callback, this);
    unsigned int staleTimer = 0;
    {
        const CCritical guard(&_mutex);
        staleTimer = _isReleased ? started : std::exchange(this->*kept, started);
    }
    if (staleTimer) timer.StopTimer(staleTimer);
}

void ConfigureImpl::ConfigureInnerStart(unsigned int, void* configure) {
    static_cast<ConfigureImpl*>(configure)->StartOnce();
}

void ConfigureImpl::ConfigureRetryRequest(unsigned int, void* configure) {
    static_cast<ConfigureImpl*>(configure)->Request();
}

void ConfigureImpl::_Init() {
    _ruleID = 0;
    if (_url.empty()) _url = AString(_bundle->Get(Quern::kCoreModule, kUrlKey, "")).c_str();
    _channelID = QuernCommon::GetInstance()->GetChannelID();
    _openID = QuernCommon::GetInstance()->GetOpenID();
}

// By way of the main run loop, where none of the caller's locks is held. A release that comes meanwhile posts the
// removal, which then runs after this.
void ConfigureImpl::_ObserveNetwork() {
    if (_isObservingPosted.exchange(true)) return;
    MainRunLoop::Current().Post([this] {
        _isObservingPosted = false;
        if (!_IsReleased()) CNetwork::GetInstance()->AddObserver(this);
    });
}

void ConfigureImpl::StartOnce() {
    bool hasUrl = false;
    {
        const CCritical guard(&_mutex);
        if (_isReleased) return;
        if (_state == kUninitialized) {
            _Init();
            _state = kInited;
        }
        hasUrl = !_url.empty();
        if (hasUrl)
            _maxRetryCount = _retryCount = _bundle->Get(Quern::kCoreModule, kMaxRetryCountKey, kDefaultMaxRetryCount);
        else
            ORVANE_LOG_WARNING("Configure will not request remote config because of empty url!");
    }
    _ObserveNetwork();
    if (hasUrl) Request();
}

// Whether there is anything to ask, and nothing under way.
bool ConfigureImpl::_MayRequest() {
    if (_isReleased) return false;
    if (_state == kRequesting) {
        ORVANE_LOG_INFO("RemoteConfig state == kRequesting");
        return false;
    }
    if (_url.empty()) {  // cleared while a retry was to come
        ORVANE_LOG_WARNING("Configure will not request remote config because of empty url!");
        return false;
    }
    return true;
}

void ConfigureImpl::Request() {
    {
        const CCritical guard(&_mutex);
        if (!_MayRequest()) return;
    }
    // Without the mutex: the data plugin is asked for the device's id.
    QuernCommon* const common = QuernCommon::GetInstance();
    std::string channelID = common->GetChannelID();
    std::string openID = common->GetOpenID();
    const std::string comParams = common->GetComParams();
    std::string url;
    {
        const CCritical guard(&_mutex);
        if (!_MayRequest()) return;
        _channelID = std::move(channelID);
        _openID = std::move(openID);
        ORVANE_LOG_INFO("Request config, channel: %s, openID: %s,  ruleID: %d", _channelID.c_str(), _openID.c_str(),
                        static_cast<int>(_ruleID));
        ORVANE_LOG_INFO("comParams: %s", comParams.c_str());
        url = _RequestUrl(comParams);
        _state = kRequesting;
        if (_dataTask) {
            _Send(url);
            return;
        }
    }
    _MakeTaskAndSend(url);
}

std::string ConfigureImpl::_RequestUrl(const std::string& comParams) const {
    return _url + kPath + "com_params=" + URLEncoder::Encode(comParams) +
           "&biz_params=" + URLEncoder::Encode(BusinessParameters()) + "&r=" + std::to_string(CTime::GetCurTime());
}

// The state keeps every other request away meanwhile.
void ConfigureImpl::_MakeTaskAndSend(const std::string& url) {
    DataTask* const made = WWW::Request(url.c_str());
    made->SetListener(this);
    {
        const CCritical guard(&_mutex);
        if (!_isReleased) {
            _dataTask = made;
            _Send(url);
            return;
        }
    }
    MainRunLoop::Current().Post([made] { WWW::Destroy(made); });  // a change of the network may be being told
}

void ConfigureImpl::_Send(const std::string& url) {
    _dataTask->SetUrl(url.c_str());
    ORVANE_LOG_INFO("RemoteConfig url:%s, maxRetryCount %d, retryCount %d", _url.c_str(),
                    static_cast<int>(_maxRetryCount), static_cast<int>(_retryCount));
    if (!WWW::TryGet(_dataTask)) {
        // Nothing was sent, so no completion will come, and no answer is on its way that could be stale.
        _state = kFailed;
        _ignoreResult = false;
    }
    _requestTick = static_cast<uint64_t>(CTime::GetTimeTick());
}

void ConfigureImpl::OnDataTaskFinished(DataTask* task, WWWErrorCode error, int httpStatus, const char* data,
                                       long long length) {
    Value modules;
    Retry retry;
    {
        const CCritical guard(&_mutex);
        if (_isReleased) return;
        // The clock may have been set back.
        const uint64_t now = static_cast<uint64_t>(CTime::GetTimeTick());
        const uint64_t cost = (std::max(now, _requestTick) - _requestTick) / 1000;
        const auto size = static_cast<unsigned long long>(length);
        if (std::exchange(_ignoreResult, false)) {
            _state = kInited;
            ORVANE_LOG_WARNING(
                "OnDataTaskFinished ignore result:(error:%d, httpStatus:%d, cost time %llu ms, len:%llu), "
                "requestUrl:%s, setUrl:%s",
                static_cast<int>(error), httpStatus, static_cast<unsigned long long>(cost), size,
                task ? task->GetUrl() : "", _url.c_str());
            return;
        }
        // Not terminated; a line holds no more than this of it.
        const int shown = static_cast<int>(std::min<long long>(length, kLogLineCapacity));
        ORVANE_LOG_INFO("OnDataTaskFinished error:%d, httpStatus:%d, cost time %llu ms, data:%.*s, len:%llu",
                        static_cast<int>(error), httpStatus, static_cast<unsigned long long>(cost), shown,
                        data ? data : "", size);
        if (error != kWWWErrorNone)
            retry = _TakeFailure(error, static_cast<int>(cost));
        else
            modules = _TakeAnswer(data, static_cast<size_t>(length), static_cast<int>(cost));
    }
    _deliveringThread = std::this_thread::get_id();
    _RetryRequest(retry);
    _TellObservers(modules);
    if (!_IsReleased()) ConfigureReport::GetInstance()->Report();
    _deliveringThread = std::thread::id();
}

ConfigureImpl::Retry ConfigureImpl::_TakeFailure(WWWErrorCode error, int costTime) {
    ORVANE_LOG_INFO("OnDataTaskFinished error:%d", static_cast<int>(error));
    _state = kFailed;
    if (_retryCount == 0)
        ConfigureReport::GetInstance()->RecordPullConfigResult(error, costTime, _maxRetryCount - _retryCount);
    if (_retryCount < 1) return {};
    --_retryCount;
    return {true, std::exchange(_retryTimerId, 0u)};
}

void ConfigureImpl::_RetryRequest(const Retry& retry) {
    if (!retry.isDue) return;
    if (retry.staleTimer) _retryTimer.StopTimer(retry.staleTimer);
    _StartTimer(_retryTimer, &ConfigureImpl::_retryTimerId, kRetryDelay, false, ConfigureRetryRequest);
}

// The HTTP status is not looked at.
Value ConfigureImpl::_TakeAnswer(const char* data, size_t length, int costTime) {
    ConfigureReport::GetInstance()->RecordPullConfigResult(kWWWErrorNone, costTime, _maxRetryCount - _retryCount);
    Value modules;
    int32_t ruleID = 0;
    const int problem = AnswerReader::_ParseJsonObject(data, length, modules, ruleID);
    if (problem != 0) {
        ORVANE_LOG_ERROR("ParseJson error:%d", problem);
    } else {
        if (ruleID > _ruleID) {
            _ruleID = ruleID;
            BundleFactory::GetInstance()->GetDefaultBundle()->Set(Quern::kCoreModule, kRuleIdKey,
                                                                  static_cast<int>(ruleID));
        }
        _Store(modules);
    }
    _state = kFinished;
    return modules;
}

// All in one save, so that a kill leaves the old configuration or the new one.
void ConfigureImpl::_Store(const Value& modules) {
    BundleImpl::Batch batch(*_bundle);
    _bundle->RemoveAll();
    _bundle->Set(Quern::kCoreModule, kUrlKey, _url.c_str());
    if (!modules.isNull()) _bundle->Set(modules);
}

void ConfigureImpl::_TellObservers(const Value& modules) {
    if (modules.isNull()) return;
    for (ValueConstIterator module = modules.begin(), end = modules.end(); module != end; ++module) {
        if (!(*module).isObject()) {
            ORVANE_LOG_ERROR("Value is not Object type");
            continue;
        }
        StringIterator keys;
        for (ValueConstIterator key = (*module).begin(), last = (*module).end(); key != last; ++key)
            keys.Push(key.memberName());
        OnConfigureRefreshed(module.memberName(), &keys);
    }
}

void ConfigureImpl::OnConfigureRefreshed(const char* moduleName, IStringIterator* keys) {
    ConfigureObserver* observer = nullptr;
    {
        const CCritical guard(&_mutex);
        if (_isReleased) return;
        const auto found = _observers.find(moduleName);
        if (found != _observers.end()) observer = found->second;
    }
    if (observer) observer->OnConfigureRefreshed(keys);
}

void ConfigureImpl::OnNetworkStateChanged(ANetworkState state) {
    ORVANE_LOG_INFO("ANetworkState %d, _state %d", static_cast<int>(state), static_cast<int>(_state.load()));
    if (state != kANetworkNotReachable && _state == kFailed) StartOnce();
}

void ConfigureImpl::SetUrl(const char* url) {
    if (!url) return;
    {
        const CCritical guard(&_mutex);
        if (_isReleased) return;
        if (_url != url) {
            ORVANE_LOG_INFO("change url form [%s] to [%s]", _url.c_str(), url);
            _url = url;
            _ignoreResult = _ignoreResult || _state == kRequesting;
            _Store(Value());
        }
    }
    StartOnce();
}

void ConfigureImpl::Clear() {
    const CCritical guard(&_mutex);
    if (_isReleased) return;
    _url.clear();
    _ignoreResult = _ignoreResult || _state == kRequesting;
    BundleImpl::Batch batch(*_bundle);  // which saves nothing if there was nothing
    _bundle->RemoveAll();
}

}  // namespace Orvane
