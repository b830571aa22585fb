#include "PluginManager/InnerPlugin/Yarrow/TraceService.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "Base/Configure/OrvaneCoreRemoteConfig.h"
#include "Base/Container/AArray.h"
#include "Base/Container/TrimBlanks.h"
#include "Base/CoreModule.h"
#include "Base/MakeOnce.h"
#include "Base/QuernCommon.h"
#include "Base/ReportHandler/ReportHandler.h"
#include "Base/XLog.h"
#include "Orvane/RavelAccount.h"
#include "PluginManager/InnerPlugin/OrvaneCoreInnerPlugin.h"  // upward: the login is asked for in the core plugin's name
#include "PluginManager/InnerPlugin/Yarrow/LeftBehind.h"
#include "PluginManager/InnerPlugin/Yarrow/SpanContext.h"
#include "System/Thread/Time.h"

namespace Orvane::Plugin {
namespace {

using Quern::CCritical;

constexpr char kTags[] = "tags";

constexpr char kEventName[] = "YarrowClient";
constexpr int kEventDataType = 2;
constexpr int kEventSource = 2000;

// Which spans are wanted, by the setting "YarrowTargetMode".
enum TargetMode { kAllTargets = 1, kWhiteListed = 2, kNotBlackListed = 3 };

bool Holds(const std::vector<std::string>& list, const char* publicType) {
    return std::find(list.begin(), list.end(), publicType) != list.end();
}

// Adds the entries of a setting's text.
void ReadList(const std::string& text, std::vector<std::string>& list) {
    Quern::AArray entries;
    Quern::AString::Split(&entries, text.c_str(), "|");
    for (int i = 0; i < entries.Count(); ++i)
        list.emplace_back(Quern::TrimBlanks(entries.CStringAtIndex(i)));
}

// The span id in a context's text; empty for what is no such text. With debug lines on, the text is read through an
// object, because the object logs what it reads.
std::string SpanIdOf(const char* context) {
    std::string sid;
    if (context && Quern::IsLogFiltered(kLogDebug) && SpanContext::FindSpanId(context, sid)) return sid;
    return SpanContext(context).Get("sid");
}

// Counted in unsigned numbers: "ts" is whatever text a caller set.
std::string MicrosecondsSince(const char* ts) {
    const auto now = static_cast<unsigned long long>(Quern::CTime::GetTimeTick());
    return std::to_string(static_cast<long long>(now - static_cast<unsigned long long>(atoll(ts))));
}

}  // namespace

std::atomic<TraceService*> TraceService::s_pInstance{nullptr};

TraceService* TraceService::GetInstance() {
    return Quern::MakeOnce(s_pInstance, [] { return new TraceService; });
}

void TraceService::ReleaseInstance() {
    delete s_pInstance.exchange(nullptr, std::memory_order_acq_rel);
}

TraceService::TraceService()
    : _reportKeys{"tid", "sid", "pid",     "kind",   "buzid",  "setid",   "pritype", "pubtype", "name",
                  "ts",  "dur", "errcode", "errmsg", "openid", "locname", "rmtname", kTags},
      _isEnabled(false),
      _traceIdManager(std::make_unique<TraceIdManager>()) {
    _isEnabled = OrvaneCoreRemoteConfig::GetInstance()->GetBool("YarrowEnable", false);
    TraceService::initTargetList();
    ORVANE_LOG_INFO("[Yarrow] YarrowClient IsEnabled:%d", _isEnabled);
}

TraceService::~TraceService() {
    for (const auto& [sid, context] : _contexts)
        LeaveLiveSpanBehind(context);
}

const char* TraceService::GetName() const {
    return "YARROW";
}

const char* TraceService::GetPluginName() const {
    return Quern::kCoreModule;
}

bool TraceService::IsEnabled() const {
    return _isEnabled;
}

// The kept text is assigned only if it differs, which it never does after the first call: another caller may be reading
// it without the lock.
const char* TraceService::GetTraceId() {
    const CCritical guard(&_mutex);
    const Quern::AString traceId = _traceIdManager->GetTraceId();
    if (!(_traceId == traceId)) _traceId = traceId;
    return _traceId.c_str();
}

bool TraceService::IsReady(const char* publicType) {
    const CCritical guard(&_mutex);
    const bool isHit = isTargetHit(publicType);
    if (publicType) ORVANE_LOG_DEBUG("[Yarrow] publicType:%s, isHit:%d", publicType, isHit);
    return isHit;
}

void TraceService::initTargetList() {
    OrvaneCoreRemoteConfig* const settings = OrvaneCoreRemoteConfig::GetInstance();
    const CCritical guard(&_mutex);
    _targetMode = settings->GetInt("YarrowTargetMode", kAllTargets);
    ORVANE_LOG_INFO("[Yarrow] TargetMode:%d", _targetMode);
    if (_targetMode == kWhiteListed) {
        const std::string list = settings->GetString("YarrowWhiteList", "");
        ORVANE_LOG_INFO("[Yarrow] WhiteList:%s", list.c_str());
        ReadList(list, _whiteList);
    } else if (_targetMode == kNotBlackListed) {
        const std::string list = settings->GetString("YarrowBlackList", "");
        ORVANE_LOG_INFO("[Yarrow] BlackList:%s", list.c_str());
        ReadList(list, _blackList);
    }
}

bool TraceService::isTargetHit(const char* publicType) {
    if (!publicType) return false;
    const CCritical guard(&_mutex);
    switch (_targetMode) {
        case kAllTargets:
            return true;
        case kWhiteListed:
            return Holds(_whiteList, publicType);
        case kNotBlackListed:
            return !Holds(_blackList, publicType);
        default:
            return false;
    }
}

bool TraceService::genSpanId(char* out, int size) {
    return out && size >= 1 && _traceIdManager && _traceIdManager->GenSpanId(out, size);
}

ISpanContext* TraceService::_createContext(ISpanContext* parent, const char* publicType, const char* privateType) {
    char sid[12] = {};
    if (!genSpanId(sid, sizeof sid)) {
        ORVANE_LOG_WARNING("[Yarrow] genSpanId failed");
        return nullptr;
    }
    auto* const context = new SpanContext(GetTraceId(), sid, parent ? parent->Get("sid") : nullptr);
    context->Set("buzid", Quern::QuernCommon::GetInstance()->GetGameID());
    context->Set("kind", "1");
    context->Set("setid", "0");
    context->Set("pubtype", publicType ? publicType : "-1");
    context->Set("pritype", privateType ? privateType : "0");
    SetOpenId(*context);
    return context;
}

void TraceService::SetOpenId(ISpanContext& context) {
    Ravel::RavelAccount account;
    if (!sg_get_login_ret(Singleton<OrvaneCoreInnerPlugin>::GetInstance(), account)) {
        ORVANE_LOG_WARNING("[Yarrow] get login ret failed");
        return;
    }
    if (account.HasOpenID())
        context.Set("openid", account.openID);
    else
        ORVANE_LOG_WARNING("[Yarrow] getLoginRet openid is invalid!");
}

const char* TraceService::CreateContext(const char* parentContext, const char* publicType, const char* privateType) {
    const CCritical guard(&_mutex);
    SpanContext parent(parentContext);
    ISpanContext* context = _createContext(&parent, publicType, privateType);
    if (!context) return nullptr;
    if (_insert(context)) return context->ToString();
    _destroyContext(context);
    return nullptr;
}

bool TraceService::_insert(ISpanContext* context) {
    if (!context) return false;
    const CCritical guard(&_mutex);
    const auto [entry, isNew] = _contexts.try_emplace(context->Get("sid"), context);
    if (!isNew) LeaveReplacedSpanBehind(std::exchange(entry->second, context));
    return true;
}

ISpanContext* TraceService::_pop(const char* sid) {
    if (!sid) return nullptr;
    const CCritical guard(&_mutex);
    const auto found = _contexts.find(std::string_view(sid));
    if (found == _contexts.end()) return nullptr;
    ISpanContext* const context = found->second;
    _contexts.erase(found);
    return context;
}

bool TraceService::FlushContext(const char* context, YarrowDataType type, const char* key, const char* value) {
    if (!key || !value) return false;
    ORVANE_LOG_DEBUG("TraceService::FlushContext context:%p, dataType:%d, key:%s, value:%s",
                     static_cast<const void*>(context), type, key, value);
    const CCritical guard(&_mutex);
    ISpanContext* const span = _pop(SpanIdOf(context).c_str());
    if (!span) return false;
    switch (type) {
        case kYarrowUserTag:
            span->SetTag(key, value);
            break;
        case kYarrowReportField:
            SetField(*span, key, value);
            break;
        default:
            LeavePoppedSpanBehind(span);
            return false;
    }
    return _insert(span);
}

void TraceService::SetField(ISpanContext& context, const char* key, const char* value) {
    if (strcmp(key, "name") == 0)
        context.Set("ts", std::to_string(Quern::CTime::GetTimeTick()).c_str());
    else if (strcmp(key, "errcode") == 0)
        context.Set("dur", MicrosecondsSince(context.Get("ts")).c_str());
    context.Set(key, value);
}

bool TraceService::ReportContext(const char* context) {
    const CCritical guard(&_mutex);
    ISpanContext* const span = _pop(SpanIdOf(context).c_str());
    if (!span) return false;
    _reportContext(span);
    return _insert(span);
}

void TraceService::_reportContext(ISpanContext* context) {
    if (!context) return;
    Quern::ReportHandler handler(kEventName, kEventDataType, kEventSource);
    for (const std::string& key : _reportKeys) {
        if (key == kTags) continue;
        const char* const value = context->Get(key.c_str());
        ORVANE_LOG_DEBUG("[Yarrow] _reportContext k:%s, v:%s\n", key.c_str(), value);
        handler.Add(key.c_str(), value);
    }
    handler.Add(kTags, context->GetEncodedUserData());
    handler.Report();
}

bool TraceService::DestroyContext(const char* context) {
    const CCritical guard(&_mutex);
    ISpanContext* span = _pop(SpanIdOf(context).c_str());
    if (!span) return false;
    _destroyContext(span);
    return true;
}

void TraceService::_destroyContext(ISpanContext*& context) {
    delete context;
    context = nullptr;
}

}  // namespace Orvane::Plugin
