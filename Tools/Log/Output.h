// Where text goes: to a descriptor, or into a string.
#ifndef ORVANE_TOOLS_LOG_OUTPUT_H
#define ORVANE_TOOLS_LOG_OUTPUT_H

#include <memory>
#include <string>
#include <string_view>

namespace OrvaneLog {

// The base of all outputs. One thread writes. Nothing fails: an output that can fail keeps the error for whoever asks.
class Output {
public:
    virtual ~Output() = default;
    // Takes the text to the byte; may hold it back until Flush.
    virtual void Write(std::string_view text) = 0;
    // Hands on what is held back: at the end, and before anything else writes to the same place.
    virtual void Flush() {}
};

// A descriptor, in large writes. A write that fails is remembered, and what comes after it is dropped: whoever prints
// need not look at every write, and asks once at the end.
class DescriptorOutput : public Output {
public:
    // Does not own the descriptor. A full pipe is waited for, also where the descriptor does not block.
    explicit DescriptorOutput(int descriptor);
    ~DescriptorOutput() override { Flush(); }
    DescriptorOutput(const DescriptorOutput&) = delete;
    DescriptorOutput& operator=(const DescriptorOutput&) = delete;

    // A text that does not fit into what is left of the buffer makes it flush first.
    void Write(std::string_view text) override;
    void Flush() override;
    // The errno of the write that failed, else 0.
    int Error() const { return _error; }

private:
    // Writes all of it, however many calls that takes, and notes the error that keeps it from that.
    void WriteOut(const char* data, size_t length);

    int _descriptor;
    std::unique_ptr<char[]> _buffer;  // 256 KiB; a longer text passes it by
    size_t _used = 0;                 // bytes of it that hold text
    int _error = 0;
};

// Keeps what it is given, for a text that is needed whole.
class StringOutput : public Output {
public:
    void Write(std::string_view text) override { _text += text; }
    const std::string& Text() const { return _text; }

private:
    std::string _text;
};

}  // namespace OrvaneLog

#endif
