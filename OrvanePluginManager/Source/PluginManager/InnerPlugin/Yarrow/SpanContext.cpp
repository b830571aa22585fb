#include "PluginManager/InnerPlugin/Yarrow/SpanContext.h"

#include <json/writer.h>

#include "Base/Container/AArray.h"
#include "Base/XLog.h"

namespace Orvane::Plugin {
namespace {

using Quern::CCritical;

constexpr int kParts = 4;  // of a span's text

template <typename Texts>
bool Store(Texts& texts, const char* operation, const char* key, const char* value) {
    const auto place = texts.lower_bound(std::string_view(key));
    const bool isThere = place != texts.end() && place->first == key;
    if (isThere) ORVANE_LOG_DEBUG("[Yarrow] SpanContext::%s key:%s erased", operation, key);
    ORVANE_LOG_DEBUG("[Yarrow] SpanContext::%s key:%s, value:%s", operation, key, value);
    if (isThere)
        place->second = value;
    else
        texts.emplace_hint(place, key, value);
    return true;
}

template <typename Texts>
const char* Find(const Texts& texts, const char* key) {
    const auto found = texts.find(std::string_view(key));
    return found == texts.end() ? "" : found->second.c_str();
}

}  // namespace

SpanContext::SpanContext(const char* text) {
    SpanContext::_FromString(text);
}

SpanContext::SpanContext(const char* tid, const char* sid, const char* pid) {
    SpanContext::Set("tid", tid);
    SpanContext::Set("sid", sid);
    SpanContext::Set("pid", pid);
}

bool SpanContext::Set(const char* key, const char* value) {
    if (!key || !value) return false;
    const CCritical guard(&_mutex);
    return Store(_context, "Set", key, value);
}

const char* SpanContext::Get(const char* key) {
    if (!key) return "";
    const CCritical guard(&_mutex);
    return Find(_context, key);
}

bool SpanContext::SetTag(const char* key, const char* value) {
    if (!key || !value) return false;
    const CCritical guard(&_mutex);
    return Store(_tags, "SetTag", key, value);
}

const char* SpanContext::GetTag(const char* key) {
    if (!key) return "";
    const CCritical guard(&_mutex);
    return Find(_tags, key);
}

const char* SpanContext::ToString() {
    const CCritical guard(&_mutex);
    _strcontext.clear();
    for (const char* key : {"tid", "pid", "sid"})
        _strcontext.append(Find(_context, key)).append("-");
    _strcontext += "1";
    ORVANE_LOG_DEBUG("[Yarrow] _strcontext:%s", _strcontext.c_str());
    return _strcontext.c_str();
}

// The JSON library's compact form, without a tree of its values in between.
const char* SpanContext::GetEncodedUserData() {
    const CCritical guard(&_mutex);
    std::string text = "{";
    for (const auto& [key, value] : _tags) {
        ORVANE_LOG_DEBUG("[Yarrow] SpanContext::GetEncodedUserData k:%s, v:%s", key.c_str(), value.c_str());
        if (text.size() > 1) text += ',';
        text.append(Json::valueToQuotedString(key.c_str())).append(":");
        text.append(Json::valueToQuotedString(value.c_str()));
    }
    _encodedUserData = std::move(text += '}');
    ORVANE_LOG_INFO("[Yarrow] _encodedUserData size:%d, _encodedUserData:%s", static_cast<int>(_encodedUserData.size()),
                    _encodedUserData.c_str());
    return _encodedUserData.c_str();
}

bool SpanContext::_FromString(const char* text) {
    if (!text || !*text) return false;
    Quern::AArray values;
    Quern::AString::Split(&values, text, "-");
    const CCritical guard(&_mutex);
    _context.clear();
    if (values.Count() != kParts) {
        ORVANE_LOG_WARNING("[Yarrow] data from split error, values.Count:%d", values.Count());
        return false;
    }
    Set("tid", values.CStringAtIndex(0));
    Set("pid", values.CStringAtIndex(1));
    Set("sid", values.CStringAtIndex(2));
    return true;
}

bool SpanContext::FindSpanId(std::string_view text, std::string& sid) {
    size_t begin = 0;
    for (int part = 0; part + 1 < kParts; ++part) {
        const size_t end = text.find('-', begin);
        if (end == std::string_view::npos) return false;
        if (part == 2) sid = text.substr(begin, end - begin);
        begin = end + 1;
    }
    return text.find('-', begin) == std::string_view::npos;
}

}  // namespace Orvane::Plugin
