// Turns the payload of a record into text, piece by piece: reads, deciphers, inflates. Memory is fixed, whatever the
// payload claims.
//
// A compressed payload is raw deflate. The writer makes a flush behind each line, and never finishes the stream. An
// encrypted payload is a compressed one that was enciphered in groups of eight bytes from its start; the bytes behind
// the last whole group are plain (Docs/LogFormat.md).
#ifndef ORVANE_TOOLS_LOG_PAYLOAD_READER_H
#define ORVANE_TOOLS_LOG_PAYLOAD_READER_H

#include <zlib.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <string_view>

#include "Log/ByteWindow.h"
#include "Log/LineWatch.h"
#include "Storage/Log/LogTea.h"

namespace OrvaneLog {

// Where a payload lies in the source, and how it is stored.
struct Payload {
    uint64_t offset = 0;  // in the source
    uint64_t size = 0;    // bytes to take from there
    bool compressed = false;
    // The key, borrowed, of an encrypted payload, and how many bytes from the start are whole enciphered groups.
    const Quern::LogTeaKey* key = nullptr;
    uint64_t enciphered = 0;
};

// One reader serves one payload after another, each from Begin on. One thread.
class PayloadReader {
public:
    static constexpr uint64_t kAllText = std::numeric_limits<uint64_t>::max();

    // The window is borrowed, and moved by reading. Throws std::bad_alloc if zlib has no memory.
    explicit PayloadReader(ByteWindow& window);
    ~PayloadReader();
    PayloadReader(const PayloadReader&) = delete;
    PayloadReader& operator=(const PayloadReader&) = delete;

    // Starts on a payload; gives at most `textLimit` bytes of its text.
    void Begin(const Payload& payload, uint64_t textLimit = kAllText);
    // The next piece of text; empty at the end, good or bad. Valid until the next call.
    std::string_view Next();

    // Whether the deflate data was found wrong. That a stream has no end is never wrong.
    bool Failed() const { return _failed; }
    // Whether the text given so far is all of it.
    bool AtEnd() const { return _atEnd; }
    // Bytes of the payload that were used. Less than its size also where the stream says it ends early.
    uint64_t Consumed() const { return _consumed; }
    // What the text given so far shows of an inflated payload's lines.
    const LineWatch& Lines() const { return _lines; }

    // How many bytes of text can be trusted of a payload that may run into foreign bytes. If the data just ends, that
    // is all of it. If inflating fails, it is the text up to the writer's last flush; Failed() tells which. Reads the
    // whole payload and gives no text: Begin must be called again afterwards.
    uint64_t TextUpToLastFlush(const Payload& payload);
    // Whether TextUpToLastFlush found the payload to end just where the writer made a flush, as it does in a whole
    // record; and how many bytes of the payload go up to the last flush.
    bool EndsAtFlush() const { return _endsAtFlush; }
    uint64_t ConsumedAtFlush() const { return _consumedAtFlush; }

private:
    // Gives the stream the next part of the payload, deciphered; false at the payload's end.
    bool Refill();
    bool PassedFlush(size_t textSize);
    std::string_view NextPlain();
    std::string_view NextInflated();

    ByteWindow& _window;
    std::unique_ptr<uint8_t[]> _deciphered;  // the part of an encrypted payload that is being inflated
    std::unique_ptr<uint8_t[]> _text;        // the piece that Next gave
    z_stream _stream{};                      // made once, and reset for each payload
    uint64_t _textOfBlock = 0;               // how much the deflate block has given so far
    LineWatch _lines;
    Payload _payload;
    uint64_t _textLeft = 0;  // bytes of text that may still be given
    uint64_t _read = 0;      // bytes of the payload that were taken from the window
    uint64_t _consumed = 0;  // those of them that the stream has used
    bool _failed = false;
    bool _atEnd = false;
    bool _endsAtFlush = false;
    uint64_t _consumedAtFlush = 0;
};

}  // namespace OrvaneLog

#endif
