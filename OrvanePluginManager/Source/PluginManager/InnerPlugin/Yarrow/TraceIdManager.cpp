#include "PluginManager/InnerPlugin/Yarrow/TraceIdManager.h"

#include <algorithm>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <memory>
#include <new>
#include <string_view>

#include "Base/Configure/OrvaneCoreRemoteConfig.h"
#include "Base/QuernCommon.h"
#include "Base/XLog.h"
#include "PluginManager/InnerPlugin/Yarrow/TraceIdAnswer.h"
#include "PluginManager/InnerPlugin/Yarrow/YarrowUtil.h"
#include "Storage/Bundle/BundleFactory.h"
#include "Storage/File/CFile.h"
#include "Storage/File/CPath.h"
#include "System/Thread/Time.h"
#include "System/WWW/Task/WWW.h"

namespace Orvane::Plugin {
namespace {

using Quern::AArray;
using Quern::AString;
using Quern::CCritical;
using Quern::CFile;
using Quern::CPath;
using Quern::CTime;

constexpr char kEnable[] = "YarrowEnable";
constexpr char kLowerLimit[] = "YarrowLowerLimit";
constexpr char kUpperLimit[] = "YarrowUpperLimit";
constexpr char kRequestCount[] = "YarrowRequestCount";
constexpr char kStoreFilename[] = "YarrowStoreFilename";
constexpr char kUrl[] = "YarrowUrl";
constexpr char kBackupUrl[] = "YarrowBackupUrl";            // no request falls back on it
constexpr char kStoreEncrypt[] = "YarrowStoreFileEncrypt";  // the file is plain whatever it says

constexpr char kDefaultStoreFilename[] = "traceids.store";
// Of the library's files in the cache folder: settings, blocks of the log and what keeps them whole, uploads.
constexpr const char* kOwnEndings[] = {".config", ".mmap3", ".journal3", ".zip"};

// The types that the refill asks for, and that a stand-in bears.
constexpr unsigned short kPrivateType = 0;
constexpr unsigned short kPublicType = 1;

namespace SpanIdField {
constexpr size_t kTime = 0, kRandom = 32, kSequence = 48;
}
namespace TraceIdField {
constexpr size_t kGame = 0, kPublicType = 48, kPrivateType = 64, kTime = 80, kStandIn = 190;
}

uint32_t SecondsNow() {
    return static_cast<uint32_t>(CTime::GetCurTime());
}

// Whoever uses an id reads it as a C text, so one that begins with a NUL is empty.
bool IsEmpty(const AString& id) {
    return *id.c_str() == '\0';
}

AString PathInCache(const std::string& name) {
    AString path = CPath::GetCachePath();
    CPath::AppendSubPath(path, name.c_str());
    return path;
}

// The setting comes from a server. It may name a file of the cache folder, but none whose ending the library uses for
// something else: such a file may come later, too.
bool IsFileName(const std::string& name) {
    if (name.empty() || name.front() == '.' || name.find('/') != std::string::npos) return false;
    const auto hasEnding = [&](const char* ending) { return name.ends_with(ending); };
    return std::none_of(std::begin(kOwnEndings), std::end(kOwnEndings), hasEnding);
}

// Whether something lies there that is no stock: the stock would replace it.
bool HoldsSomethingElse(const AString& path) {
    std::error_code error;
    if (!std::filesystem::exists(path.c_str(), error)) return false;
    std::ifstream file(path.c_str(), std::ios::binary);
    if (!file || !std::filesystem::is_regular_file(path.c_str(), error)) return true;
    std::string text(static_cast<size_t>(kLargestTraceIdStore) + 1, '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<size_t>(file.gcount()));
    _tagTraceIdStore stock;
    AString again;
    if (text.empty()) return false;
    stock.Decode(text.data(), static_cast<int>(text.size()));
    return !stock.Encode(again) || std::string_view(again.data(), static_cast<size_t>(again.length())) != text;
}

std::string StoreFilename() {
    const std::string name = OrvaneCoreRemoteConfig::GetInstance()->GetString(kStoreFilename, kDefaultStoreFilename);
    if (name == kDefaultStoreFilename || (IsFileName(name) && !HoldsSomethingElse(PathInCache(name)))) return name;
    ORVANE_LOG_WARNING("[Yarrow] %s is no name for the stock:%s", kStoreFilename, name.c_str());
    return kDefaultStoreFilename;
}

// Gives the file new content, so that a kill or a full disk leaves the old stock or the new one. False if it is the old
// one. Without a sync, for which the first span would wait: a loss of power may leave an empty stock.
bool ReplaceFile(const AString& path, const AString& bytes) {
    const std::string next = std::string(path.c_str()) + ".new";
    CFile file;
    const bool isWritten = file.Open(next.c_str(), Quern::kFileRecreate) && file.Write(bytes.data(), bytes.length());
    file.Close();
    if (isWritten && CFile::Rename(next.c_str(), path.c_str())) return true;
    CFile::Remove(next.c_str());
    return false;
}

void LogSetting(const char* key, int value) {
    ORVANE_LOG_INFO("[Yarrow][%s]:%d", key, value);
}

void LogSetting(const char* key, const std::string& value) {
    ORVANE_LOG_INFO("[Yarrow][%s]:%s", key, value.c_str());
}

// Whether the answer says how the server fared.
bool HasEnvelope(const TraceIdAnswer& answer) {
    using Fault = TraceIdAnswer::Fault;
    return answer.fault != Fault::kNotJson && answer.fault != Fault::kNotObject && answer.fault != Fault::kNoEnvelope;
}

void LogAnswer(const TraceIdAnswer& answer) {
    using Fault = TraceIdAnswer::Fault;
    if (HasEnvelope(answer))
        ORVANE_LOG_INFO("[Yarrow] parseTraceIdData retcode:%d, retmsg:%s", answer.retcode, answer.retmsg.c_str());
    switch (answer.fault) {
        case Fault::kNone:
            return;
        case Fault::kNotJson:
            ORVANE_LOG_WARNING("[Yarrow] parseTraceIdData parse json object fail");
            return;
        case Fault::kNotObject:
            ORVANE_LOG_WARNING("[Yarrow] json is not Object");
            return;
        case Fault::kNoEnvelope:
        case Fault::kNoIds:
            ORVANE_LOG_WARNING("[Yarrow] parseTraceIdData check member failed");
            return;
        case Fault::kRetcode:
            ORVANE_LOG_WARNING("[Yarrow] parseTraceIdData retcode:%d", answer.retcode);
            return;
        case Fault::kCountBelowOne:
            ORVANE_LOG_WARNING("[Yarrow] parseTraceIdData invalid param count:%d", answer.count);
            return;
        case Fault::kCount:
            ORVANE_LOG_WARNING("[Yarrow] parseTraceIdData count error, count:%d, traceids.size():%d", answer.count,
                               answer.size);
            return;
        case Fault::kTooLarge:
            ORVANE_LOG_WARNING("[Yarrow] parseTraceIdData traceids too large, count:%d", answer.count);
            return;
    }
}

}  // namespace

TraceIdManager::TraceIdManager() : _config(ReadConfig()) {
    ORVANE_LOG_INFO("[Yarrow] TraceConfig LowerLimit:%d, UpperLimit:%d, RequestCount:%d, StoreFileName:%s",
                    _config.lowerLimit, _config.upperLimit, _config.requestCount, _config.storeFileName.c_str());
}

TraceIdManager::~TraceIdManager() {
    if (!_dataTask) return;
    _dataTask->RemoveListener(this);
    _dataTask->Cancel();
    Quern::WWW::Destroy(_dataTask);
    _dataTask = nullptr;
}

TraceIdManager::_tagTraceConfig TraceIdManager::ReadConfig() {
    OrvaneCoreRemoteConfig* settings = OrvaneCoreRemoteConfig::GetInstance();
    _tagTraceConfig config;
    config.lowerLimit = settings->GetInt(kLowerLimit, 5);
    config.upperLimit = settings->GetInt(kUpperLimit, 60);
    config.requestCount = settings->GetInt(kRequestCount, 30);
    config.storeFileName = PathInCache(StoreFilename());
    return config;
}

AString TraceIdManager::GetTraceId() {
    const CCritical guard(&_mutex);
    if (!IsEmpty(_traceId)) return _traceId;
    int count = 0;
    _traceId = pop1TraceIdfromFile(count);
    if (count <= _config.lowerLimit) requestTraceIdList(static_cast<unsigned int>(_config.requestCount));
    if (IsEmpty(_traceId)) _traceId = genFakeTraceId(kPrivateType, kPublicType);
    return _traceId;
}

bool TraceIdManager::GenSpanId(char* out, int size) {
    if (!out || size < static_cast<int>(YarrowUtil::TextLength(YarrowUtil::kSpanIdBits)) + 1) return false;
    std::bitset<YarrowUtil::kSpanIdBits> bits;
    YarrowUtil::PutField(bits, SpanIdField::kTime, SecondsNow());
    ++_spanSequence;
    srand(static_cast<unsigned int>(time(nullptr)));  // for whoever relies on it; the read below does not
    YarrowUtil::PutField(bits, SpanIdField::kRandom, static_cast<uint16_t>(_random.Next()));
    YarrowUtil::PutField(bits, SpanIdField::kSequence, _spanSequence);
    ORVANE_LOG_DEBUG("[Yarrow] span id bitset:%s", bits.to_string().c_str());
    YarrowUtil::Bit2Base64(out, static_cast<unsigned long>(size), bits);
    return true;
}

AString TraceIdManager::genFakeTraceId(unsigned short priType, unsigned short pubType) {
    const long long game = Quern::BundleFactory::GetInstance()->GetDefaultBundle()->Get("Orvane", "GameId", 0LL);
    std::bitset<YarrowUtil::kTraceIdBits> bits;
    YarrowUtil::PutField(bits, TraceIdField::kGame, static_cast<uint32_t>(game));
    YarrowUtil::PutField(bits, TraceIdField::kPublicType, pubType);
    YarrowUtil::PutField(bits, TraceIdField::kPrivateType, priType);
    YarrowUtil::PutField(bits, TraceIdField::kTime, SecondsNow());
    bits.set(TraceIdField::kStandIn);
    char text[YarrowUtil::TextLength(YarrowUtil::kTraceIdBits) + 1];
    YarrowUtil::Bit2Base64(text, sizeof text, bits);
    ORVANE_LOG_INFO("[Yarrow] fake traceId bitset:%s", bits.to_string().c_str());
    ORVANE_LOG_INFO("[Yarrow] fake traceId:%s", text);
    return text;
}

AString TraceIdManager::pop1TraceIdfromFile(int& count) {
    const char* const path = _config.storeFileName.c_str();
    ORVANE_LOG_INFO("[Yarrow] traceIdStorePath :%s", path);
    CFile file;
    if (!file.Open(path, Quern::kFileAppend)) {
        ORVANE_LOG_WARNING("[Yarrow] traceIdStore not exist");
        return {};
    }
    const int length = file.GetLength();
    if (length > kLargestTraceIdStore) {
        ORVANE_LOG_WARNING("[Yarrow] traceIdStore is too large:%d", length);
        return {};
    }
    {
        const std::unique_ptr<char[]> buffer(new (std::nothrow) char[static_cast<size_t>(length) + 1]);
        const int read = file.Read(buffer.get(), length);  // below 1 for a null buffer and an empty file
        if (read < 1) return {};
        ORVANE_LOG_DEBUG("[Yarrow] read data from traceIdStore len:%d", read);
        _traceIdStore.traceIds.RemoveAll();
        _traceIdStore.Decode(buffer.get(), read);
        ORVANE_LOG_INFO("[Yarrow] traceId obj size:%d", _traceIdStore.traceIds.Count());
        file.Close();
    }
    AString traceId;
    if (const AString* first = _traceIdStore.traceIds.FirstAString()) {
        traceId = *first;
        _traceIdStore.traceIds.RemoveFirstObject();
    }
    ORVANE_LOG_DEBUG("[Yarrow] after traceId obj size:%d", _traceIdStore.traceIds.Count());
    AString bytes;
    if (_traceIdStore.Encode(bytes) && ReplaceFile(_config.storeFileName, bytes))
        count = _traceIdStore.traceIds.Count();
    else
        ORVANE_LOG_WARNING("[Yarrow] traceIdStore write fail");
    return traceId;
}

AString TraceIdManager::genTraceUrl(int count) {
    AString url = OrvaneCoreRemoteConfig::GetInstance()->GetString(kUrl, "").c_str();
    url += "?";
    url += "buzid=";
    url += Quern::QuernCommon::GetInstance()->GetGameID();
    url += "&setid=0&pritype=0&pubtype=1&count=";
    url += std::to_string(count).c_str();
    return url;
}

void TraceIdManager::requestTraceIdList(unsigned int count) {
    if (!_dataTask) {
        const AString url = genTraceUrl(static_cast<int>(count));
        ORVANE_LOG_INFO("[Yarrow] requestTraceIdList url:%s", url.c_str());
        _dataTask = Quern::WWW::Request(url.c_str());
        _dataTask->SetListener(this);
    }
    _dataTask->Get();
}

void TraceIdManager::OnDataTaskFinished(Quern::DataTask* task, Quern::WWWErrorCode error, int httpStatus,
                                        const char* data, long long size) {
    if (!data || size < 1) {
        ORVANE_LOG_WARNING("[Yarrow] TraceService::OnDataTaskFinished Invalid params");
        return;
    }
    if (size > kLargestTraceIdStore) {
        ORVANE_LOG_WARNING("[Yarrow] TraceService::OnDataTaskFinished answer is too large:%lld", size);
        return;
    }
    const std::unique_ptr<char[]> text(new (std::nothrow) char[static_cast<size_t>(size) + 1]);
    if (!text) {
        ORVANE_LOG_WARNING("[Yarrow] TraceService::OnDataTaskFinished Alloc momory failed");
        return;
    }
    memcpy(text.get(), data, static_cast<size_t>(size));
    text[static_cast<size_t>(size)] = '\0';
    ORVANE_LOG_INFO("[Yarrow] task:%p, error:%d, httpStatus:%d, totolSize:%lld, data:%s", static_cast<void*>(task),
                    error, httpStatus, size, text.get());
    AArray ids;
    const bool isParsed = parseTraceIdData(&ids, text.get(), static_cast<int>(size));
    ORVANE_LOG_INFO("[Yarrow] parseTraceIdData traceid count:%d", ids.Count());
    if (!isParsed || ids.Count() == 0)
        ORVANE_LOG_WARNING("[Yarrow] parseTraceIdData fail");
    else if (!appendTraceIdSettoFile(&ids))
        ORVANE_LOG_WARNING("[Yarrow] appendTraceIdSettoFile fail");
}

bool TraceIdManager::parseTraceIdData(AArray* ids, const char* data, int length) {
    if (!ids || !data || length < 1) return false;
    const TraceIdAnswer answer = ReadTraceIdAnswer(data, length);
    LogAnswer(answer);
    if (answer.fault != TraceIdAnswer::Fault::kNone) return false;
    for (const std::string& id : answer.traceIds)
        ids->Add(new AString(id.data(), static_cast<int>(id.size())), true);
    return true;
}

bool TraceIdManager::appendTraceIdSettoFile(AArray* ids) {
    if (!ids) return false;
    _tagTraceIdStore whole = _traceIdStore;
    whole.traceIds.Add(ids);
    AString bytes;
    if (!whole.Encode(bytes) || bytes.length() > kLargestTraceIdStore) return false;
    _traceIdStore = whole;
    if (ReplaceFile(_config.storeFileName, bytes)) return true;
    ORVANE_LOG_INFO("[Yarrow] traceIdStore open fail");
    return false;
}

void TraceIdManager::DumpCloudCtrlData() const {
    OrvaneCoreRemoteConfig* settings = OrvaneCoreRemoteConfig::GetInstance();
    constexpr char kUnknown[] = "unknown";
    LogSetting(kEnable, settings->GetBool(kEnable, false));
    LogSetting(kLowerLimit, settings->GetInt(kLowerLimit, -1));
    LogSetting(kUpperLimit, settings->GetInt(kUpperLimit, -1));
    LogSetting(kRequestCount, settings->GetInt(kRequestCount, -1));
    LogSetting(kStoreFilename, settings->GetString(kStoreFilename, kUnknown));
    LogSetting(kUrl, settings->GetString(kUrl, kUnknown));
    LogSetting(kBackupUrl, settings->GetString(kBackupUrl, kUnknown));
    LogSetting(kStoreEncrypt, settings->GetBool(kStoreEncrypt, false));
}

}  // namespace Orvane::Plugin
