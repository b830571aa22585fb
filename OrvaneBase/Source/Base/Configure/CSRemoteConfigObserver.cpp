// The callback takes a JSON text, since the script layer knows no iterators. It is an atomic, because any thread may
// set it while a refresh is told.
#include "Base/Configure/CSRemoteConfigObserver.h"

#include <json/json.h>

#include <string>

#include "Base/CompactJson.h"
#include "Base/XLog.h"

std::atomic<void (*)(const char* keys)> g_callback{nullptr};

void CSRemoteConfigObserver::OnRemoteConfigRefreshed(Orvane::IRemoteConfig*, Orvane::IStringIterator* keys) {
    void (*const callback)(const char* keys) = g_callback.load(std::memory_order_acquire);
    if (!callback) {
        ORVANE_LOG_INFO("OnRemoteConfigRefreshed, g_callback is null.");
        return;
    }
    Json::Value list(Json::arrayValue);
    while (!keys->IsEnd())
        list.append(keys->Next());
    Json::Value message(Json::objectValue);
    message["KeyList"] = list;
    const std::string text = Quern::WriteCompactJson(message);
    callback(text.c_str());
    ORVANE_LOG_INFO("OnRemoteConfigRefreshed, g_callback with %s.", text.c_str());
}
