// A text that any thread may read while another sets it.
#ifndef ORVANE_BASE_KEPT_TEXT_H
#define ORVANE_BASE_KEPT_TEXT_H

#include <atomic>

namespace Quern {

// Texts that were handed out stay valid for the life of the process: all are kept, of equal ones a single one. For what
// has few values. Never destroyed.
class KeptText {
public:
    // The text, empty as long as none was set; never null.
    const char* Get() const;
    // Whether a text was set, be it an empty one.
    bool IsSet() const { return _value.load(std::memory_order_acquire) != nullptr; }
    // Takes a copy; null is the empty text. Of two at a time one wins.
    void Set(const char* text);
    // The same as long as the text is empty: what was looked up does not take the place of what was told meanwhile.
    void SetIfEmpty(const char* text);

private:
    struct Value;

    static bool IsEmpty(const Value* value);
    // The kept value of that text, which is made if there is none.
    const Value* Keep(const char* text);
    void Install(const char* text, bool onlyIfEmpty);

    std::atomic<const Value*> _kept{nullptr};  // the last one made, which leads to those before
    std::atomic<const Value*> _value{nullptr};
};

}  // namespace Quern

#endif
