// The factory of HTTP tasks as games and siblings reach it: by the name of a run-time class.
#include <cstdint>

#include "Base/RunTimeClass.h"
#include "Orvane/WWW.h"
#include "System/WWW/Task/UrlResponseImpl.h"
#include "System/WWW/Task/WWW.h"
#include "System/WWW/Task/WWWTaskBase.h"
#include "System/WWW/UrlReference.h"
#include "System/WWW/UrlSession.h"

namespace Quern {
namespace {

const char* Text(void* argument) {
    return static_cast<const char*>(argument);
}

void* Request(orvane_object*, const char*, void* const* arguments) {
    DataTask* const task = WWW::Request(Text(arguments[0]));
    return task;
}

void* IsRequestUrl(orvane_object*, const char*, void* const* arguments) {
    const char* const url = Text(arguments[0]);
    return reinterpret_cast<void*>(uintptr_t(url && *url && ParseUrlReference(url)));
}

void* DownloadFile(orvane_object*, const char*, void* const* arguments) {
    DownloadFileTask* const task = WWW::DownloadFile(Text(arguments[0]), Text(arguments[1]));
    return task;
}

void* GetSorrelUploadTask(orvane_object*, const char*, void* const*) {
    return WWW::GetSorrelUploadTask();
}

void* DestroyDataTask(orvane_object*, const char*, void* const* arguments) {
    WWW::Destroy(static_cast<DataTask*>(arguments[0]));
    return nullptr;
}

void* DestroyDownloadFileTask(orvane_object*, const char*, void* const* arguments) {
    WWW::Destroy(static_cast<DownloadFileTask*>(arguments[0]));
    return nullptr;
}

void* MakeUrlResponse(orvane_object*, const char*, void* const* arguments) {
    const auto* const parts = static_cast<const OrvaneUrlResponseParts*>(arguments[0]);
    if (!parts) return nullptr;
    auto* const response =
        new UrlResponseImpl(parts->url, parts->version, parts->status, parts->message, parts->body, parts->bodyLength);
    for (const char* const* header = parts->headers; header && header[0] && header[1]; header += 2)
        response->SetHeader(header[0], header[1]);
    return static_cast<UrlResponse*>(response);
}

void* MeasureUrl(orvane_object*, const char*, void* const* arguments) {
    const char* const url = Text(arguments[0]);
    if (!url || !ParseUrlReference(url)) return nullptr;
    const auto done = reinterpret_cast<void (*)(const OrvaneUrlMeasurement*, void*)>(arguments[1]);
    void* const context = arguments[2];
    UrlSession& session = UrlSession::Current();
    const auto tell = [done, context](UrlSession::TransferId, const UrlResult& result) {
        const UrlTimes& times = result.times;
        const OrvaneUrlMeasurement measurement{
            result.error,     result.status, static_cast<long long>(result.body.size()),
            times.nameLookup, times.connect, times.tls,
            times.firstByte,  times.total};
        if (done) done(&measurement, context);
    };
    session.Resume(session.MakeDataTransfer(UrlRequest(url), tell));
    return &session;
}

}  // namespace

void RegisterWWWClass() {
    WWWTaskBase::MakeLiveSet();
    RegisterRunTimeClass("OrvaneWWW", {},
                         {{"request:", Request},
                          {"isRequestUrl:", IsRequestUrl},
                          {"downloadFile:localPath:", DownloadFile},
                          {"getSorrelUploadTask", GetSorrelUploadTask},
                          {"destroyDataTask:", DestroyDataTask},
                          {"destroyDownloadFileTask:", DestroyDownloadFileTask},
                          {"makeUrlResponse:", MakeUrlResponse},
                          {"measureUrl:done:context:", MeasureUrl}});
}

}  // namespace Quern
