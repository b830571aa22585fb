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

// The operations, and the form of the text ("TRACE-PARENT-SPAN-1"), are in Orvane/ISpanContext.h. The trace service
// makes the live spans and keeps them by their span id; callers hold the text alone. Any thread; a result leads into
// the object, so the service uses it under its own lock.
class SpanContext final : public ISpanContext {
public:
    // Takes the ids from a span's text; what is no such text gives an object without fields.
    explicit SpanContext(const char* text);
    // Trace, span and parent, which is not the order of the text. A null leaves its field unset.
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

    // The last of tracing's locks: only the log's are taken under it. Recursive: reading a text sets fields.
    Quern::CMutex _mutex{true};
    // These four under _mutex.
    Texts _context;                // the report fields
    Texts _tags;                   // the caller's own
    std::string _strcontext;       // what ToString's result leads to
    std::string _encodedUserData;  // what GetEncodedUserData's result leads to
};

}  // namespace Orvane::Plugin

#endif
