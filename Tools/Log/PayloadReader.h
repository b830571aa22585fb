// Turns a payload into text, piece by piece: reads, deciphers, inflates. Memory is fixed, whatever the payload claims.
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

struct Payload {
    uint64_t offset = 0;  // in the source
    uint64_t size = 0;    // bytes to take from there
    bool compressed = false;
    // The key, borrowed, of an encrypted payload, and how many bytes from the start are whole enciphered groups.
    const Quern::LogTeaKey* key = nullptr;
    uint64_t enciphered = 0;
};

class PayloadReader {
public:
    static constexpr uint64_t kAllText = std::numeric_limits<uint64_t>::max();

    // The window is borrowed, and moved by reading.
    explicit PayloadReader(ByteWindow& window);
    ~PayloadReader();
    PayloadReader(const PayloadReader&) = delete;
    PayloadReader& operator=(const PayloadReader&) = delete;

    // Starts on a payload; gives at most `textLimit` bytes of its text.
    void Begin(const Payload& payload, uint64_t textLimit = kAllText);
    // The next piece of text; empty at the end, good or bad. Valid until the next call.
    std::string_view Next();

    // Whether the deflate data was found wrong. Never because it has no end: a writer leaves every stream unfinished.
    bool Failed() const { return _failed; }
    // Whether the text given so far is all of it.
    bool AtEnd() const { return _atEnd; }
    // Bytes of the payload that were used. Less than its size also where the stream says it ends early.
    uint64_t Consumed() const { return _consumed; }
    // What the text given so far shows of an inflated payload's lines.
    const LineWatch& Lines() const { return _lines; }

    // How much text can be trusted of a payload that runs into foreign bytes: all up to the last flush that the
    // writer made, or all there is if the data just ends; Failed() tells which. Begin must be called again afterwards.
    uint64_t TextUpToLastFlush(const Payload& payload);
    // Whether that found the payload to end just where the writer made a flush, as it does in a whole record; and how
    // many bytes of it go up to the last flush.
    bool EndsAtFlush() const { return _endsAtFlush; }
    uint64_t ConsumedAtFlush() const { return _consumedAtFlush; }

private:
    bool Refill();
    bool PassedFlush(size_t textSize);
    std::string_view NextPlain();
    std::string_view NextInflated();

    ByteWindow& _window;
    std::unique_ptr<uint8_t[]> _deciphered;
    std::unique_ptr<uint8_t[]> _text;
    z_stream _stream{};
    uint64_t _textOfBlock = 0;  // how much the deflate block has given so far
    LineWatch _lines;
    Payload _payload;
    uint64_t _textLeft = 0;
    uint64_t _read = 0;
    uint64_t _consumed = 0;
    bool _failed = false;
    bool _atEnd = false;
    bool _endsAtFlush = false;
    uint64_t _consumedAtFlush = 0;
};

}  // namespace OrvaneLog

#endif
