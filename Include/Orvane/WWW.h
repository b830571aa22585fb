/// \file WWW.h
/// How code that does not link to the library gets HTTP tasks. Header-only: link liborvaneruntime.so and nothing else.
/// C++11.
///
/// The functions find the library by the run-time class "OrvaneWWW", and give a neutral value in a process without it.
/// Each may be called from any thread.
#ifndef ORVANE_WWW_H
#define ORVANE_WWW_H

#include "Orvane/DataTask.h"
#include "Orvane/DownloadFileTask.h"
#include "Orvane/RunTime.h"
#include "Orvane/SorrelCUploadTask.h"
#include "Orvane/UrlResponse.h"

/// Makes a task for requests that are held in memory. Nothing is sent before its Get or Post.
/// \param url copied; null gives null
/// \return owned by the caller, who gives it back to gs_OrvaneDestroy; null without the library
inline Quern::DataTask* gs_OrvaneRequest(const char* url) {
    void* arguments[] = {const_cast<char*>(url)};
    return static_cast<Quern::DataTask*>(orvane_class_perform(orvane_class_lookup("OrvaneWWW"), "request:", arguments));
}

/// Whether a task would take the address: it follows RFC 3986 and is not empty. One of another scheme, or without a
/// host, is taken too, and ends as kWWWErrorUnsupportedURL.
/// \return false for null and without the library
inline bool gs_OrvaneIsRequestUrl(const char* url) {
    void* arguments[] = {const_cast<char*>(url)};
    return orvane_class_perform(orvane_class_lookup("OrvaneWWW"), "isRequestUrl:", arguments) != nullptr;
}

/// Makes a task that downloads to a file. Nothing is sent before its Resume.
/// \param url copied; null gives null
/// \param localPath where the file is to lie; copied; null gives null
/// \return owned by the caller, who gives it back to gs_OrvaneDestroy; null without the library
inline Quern::DownloadFileTask* gs_OrvaneDownloadFile(const char* url, const char* localPath) {
    void* arguments[] = {const_cast<char*>(url), const_cast<char*>(localPath)};
    return static_cast<Quern::DownloadFileTask*>(
        orvane_class_perform(orvane_class_lookup("OrvaneWWW"), "downloadFile:localPath:", arguments));
}

/// Makes an upload of one file. Nothing is sent before its Upload.
/// \return owned by the caller, who deletes it once its listener has been told; null without the library
inline SorrelCUploadTask* gs_OrvaneGetSorrelUploadTask() {
    return static_cast<SorrelCUploadTask*>(
        orvane_class_perform(orvane_class_lookup("OrvaneWWW"), "getSorrelUploadTask", nullptr));
}

/// Destroys a task. A null is ignored. When the call has returned, its listener is not called any more.
inline void gs_OrvaneDestroy(Quern::DataTask* task) {
    void* arguments[] = {task};
    orvane_class_perform(orvane_class_lookup("OrvaneWWW"), "destroyDataTask:", arguments);
}
inline void gs_OrvaneDestroy(Quern::DownloadFileTask* task) {
    void* arguments[] = {task};
    orvane_class_perform(orvane_class_lookup("OrvaneWWW"), "destroyDownloadFileTask:", arguments);
}

/// What an answer is made of; a null leaves a part at what UrlResponse says of it.
struct OrvaneUrlResponseParts {
    const char* url;
    const char* version;
    int status;
    const char* message;
    const char* const* headers;  ///< name, value, name, value, ..., null; of two values of one name the first stays
    const void* body;
    long long bodyLength;  ///< in bytes; below 1 is no body
};

/// Makes an answer out of its parts, which are copied.
/// \return owned by the caller, who deletes it; null without the library and for null parts
inline Quern::UrlResponse* gs_OrvaneMakeUrlResponse(const OrvaneUrlResponseParts* parts) {
    void* arguments[] = {const_cast<OrvaneUrlResponseParts*>(parts)};
    return static_cast<Quern::UrlResponse*>(
        orvane_class_perform(orvane_class_lookup("OrvaneWWW"), "makeUrlResponse:", arguments));
}

/// How long a GET took and where. The times are counted from its start, in microseconds, and each includes those
/// before it; -1 where it did not get so far. After redirects they are those of the last address, but for the total.
struct OrvaneUrlMeasurement {
    int error;        ///< what the transport says: 0, or a negative code
    int status;       ///< of the answer, 0 if none came
    long long bytes;  ///< of the body as it was decoded
    long long nameLookup;
    long long connect;
    long long tls;  ///< -1 for http
    long long firstByte;
    long long total;
};

/// Sends one GET and tells how long it took, for diagnosing a network.
/// \param url copied; null, or an address that does not follow RFC 3986, gives false
/// \param done called once, on the thread of the data tasks' listeners; what it is told is valid for the call only
/// \param context handed to `done`
/// \return whether the request was sent; false without the library
inline bool gs_OrvaneMeasureUrl(const char* url, void (*done)(const OrvaneUrlMeasurement* measurement, void* context),
                                void* context) {
    void* arguments[] = {const_cast<char*>(url), reinterpret_cast<void*>(done), context};
    return orvane_class_perform(orvane_class_lookup("OrvaneWWW"), "measureUrl:done:context:", arguments) != nullptr;
}

#endif
