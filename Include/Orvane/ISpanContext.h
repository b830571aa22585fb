/// \file ISpanContext.h
/// One span of a distributed trace, as the trace service keeps it. Slot order is a binary contract.
#ifndef ORVANE_I_SPAN_CONTEXT_H
#define ORVANE_I_SPAN_CONTEXT_H

namespace Orvane {
namespace Plugin {

/// A set of report fields and a set of user tags, both texts by key, and three fields among the former that place the
/// span in its trace: "tid", the trace; "sid", the span; "pid", the span above it, empty for the root.
///
/// Its text is the only thing of it that leaves the service (ITraceService.h): trace, parent and span, joined by "-",
/// and a constant behind them, as in "TRACE-PARENT-SPAN-1", or "TRACE--SPAN-1" for a root. Ids hold no "-".
///
/// Any thread, several at a time. No result is null. A result is valid until the entry is replaced, or, of a text that
/// is built, until that operation's next call; beside a thread that does so it is not to be used.
class ISpanContext {
public:
    virtual ~ISpanContext() {}
    /// Sets a report field, in place of an earlier value. Any key may be set; which ones are reported is the service's.
    /// \return false, and nothing changed, if either is null
    virtual bool Set(const char* key, const char* value) = 0;
    /// \return the field; an empty text for null and for one that was not set
    virtual const char* Get(const char* key) = 0;
    /// Set, of a tag.
    virtual bool SetTag(const char* key, const char* value) = 0;
    /// Get, of a tag.
    virtual const char* GetTag(const char* key) = 0;
    /// \return the span's text
    virtual const char* ToString() = 0;
    /// \return the tags as one JSON object on one line (RFC 8259), the members in byte order of their keys, all values
    ///         strings, what is not ASCII as "\u"; "{}" without tags
    virtual const char* GetEncodedUserData() = 0;
    /// Takes the three ids from a span's text. All fields go, those of a text that is refused too; the tags stay.
    /// \return false for null and an empty text, with nothing changed; false, with no field left, for a text that does
    ///         not have four parts. What stands in the fourth does not matter.
    virtual bool _FromString(const char* text) = 0;
};

}  // namespace Plugin
}  // namespace Orvane

#endif
