// One span of a distributed trace: its report fields, its tags, and its text.
#ifndef ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_YARROW_SPAN_CONTEXT_H
#define ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_YARROW_SPAN_CONTEXT_H

#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "Orvane/ISpanContext.h"
#include "System/Thread/Mutex.h"

namespace Orvane::Plugin {

class SpanContext final : public ISpanContext {
public:
    // Takes the ids from a span's text; what is no such text gives an object without fields.
    explicit SpanContext(const char* text);
    // A null leaves its field unset.
    SpanContext(const char* tid, const char* sid, const char* pid);

    bool Set(const char* key, const char* value) override;
    const char* Get(const char* key) override;
    bool SetTag(const char* key, const char* value) override;
    const char* GetTag(const char* key) override;
    const char* ToString() override;
    const char* GetEncodedUserData() override;
    bool _FromString(const char* text) override;

    // The span id in a span's text, without an object; false for what is no such text. REQUIRES: text is not null.
    static bool FindSpanId(std::string_view text, std::string& sid);

private:
    // Looked up by texts that are no std::string.
    using Texts = std::map<std::string, std::string, std::less<>>;

    // The last of tracing's locks: only the log's are taken under it. Recursive: a callback of the log may come back.
    Quern::CMutex _mutex{true};
    Texts _context;  // these four under _mutex
    Texts _tags;
    std::string _strcontext;
    std::string _encodedUserData;
};

}  // namespace Orvane::Plugin

#endif
