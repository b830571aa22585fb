#include "Log/PayloadReader.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace OrvaneLog {
namespace {

constexpr int kRawDeflate = -15;
constexpr size_t kInputChunk = 64u << 10;  // whole cipher groups
constexpr size_t kTextChunk = 256u << 10;
// What inflate says of its state in z_stream::data_type.
constexpr int kAtBlockEnd = 128, kUnusedBits = 7;
static_assert(kInputChunk % Quern::kLogTeaGroup == 0 && kInputChunk <= ByteWindow::kCapacity);

}  // namespace

PayloadReader::PayloadReader(ByteWindow& window)
    : _window(window), _text(std::make_unique_for_overwrite<uint8_t[]>(kTextChunk)) {
    if (inflateInit2(&_stream, kRawDeflate) != Z_OK) throw std::bad_alloc();
}

PayloadReader::~PayloadReader() {
    inflateEnd(&_stream);
}

void PayloadReader::Begin(const Payload& payload, uint64_t textLimit) {
    _payload = payload;
    _textLeft = textLimit;
    _read = 0;
    _consumed = 0;
    _failed = false;
    _atEnd = false;
    _stream.avail_in = 0;
    _textOfBlock = 0;
    _lines.Begin();
    if (payload.compressed) inflateReset(&_stream);
    if (payload.key && !_deciphered) _deciphered = std::make_unique_for_overwrite<uint8_t[]>(kInputChunk);
}

std::string_view PayloadReader::Next() {
    if (_atEnd) return {};
    return _payload.compressed ? NextInflated() : NextPlain();
}

std::string_view PayloadReader::NextPlain() {
    const uint64_t left = std::min(_payload.size - _read, _textLeft);
    const size_t wanted = static_cast<size_t>(std::min<uint64_t>(left, kTextChunk));
    const auto bytes = _window.At(_payload.offset + _read, wanted);
    const size_t count = std::min(bytes.size(), wanted);
    _read += count;
    _consumed = _read;
    _textLeft -= count;
    _atEnd = count < wanted || count == left;
    return {reinterpret_cast<const char*>(bytes.data()), count};
}

// Points the stream's input at the next part of the payload. False at its end.
bool PayloadReader::Refill() {
    const size_t wanted = static_cast<size_t>(std::min<uint64_t>(_payload.size - _read, kInputChunk));
    if (wanted == 0) return false;
    const auto bytes = _window.At(_payload.offset + _read, wanted);
    const size_t count = std::min(bytes.size(), wanted);
    const uint8_t* input = bytes.data();
    if (_payload.key) {
        memcpy(_deciphered.get(), input, count);
        const uint64_t enciphered = _payload.enciphered > _read ? _payload.enciphered - _read : 0;
        Quern::LogTeaDecrypt(_deciphered.get(), static_cast<size_t>(std::min<uint64_t>(enciphered, count)),
                             *_payload.key);
        input = _deciphered.get();
    }
    _read += count;
    _stream.next_in = const_cast<Bytef*>(input);
    _stream.avail_in = static_cast<uInt>(count);
    return count > 0;
}

// Whether inflate, which has just given so much text, stands behind a flush: an empty block that ends on a byte's edge.
bool PayloadReader::PassedFlush(size_t textSize) {
    _textOfBlock += textSize;
    if (!(_stream.data_type & kAtBlockEnd)) return false;
    const bool flush = _textOfBlock == 0 && !(_stream.data_type & kUnusedBits);
    _textOfBlock = 0;
    return flush;
}

// Stops at every end of a deflate block, to see the flushes.
std::string_view PayloadReader::NextInflated() {
    const size_t room = static_cast<size_t>(std::min<uint64_t>(kTextChunk, _textLeft));
    _stream.next_out = _text.get();
    _stream.avail_out = static_cast<uInt>(room);
    while (_stream.avail_out > 0) {
        // Without further input the stream may still hold back text for which there was no room before.
        const bool hasInput = _stream.avail_in > 0 || Refill();
        const auto* const from = reinterpret_cast<const char*>(_stream.next_out);
        const size_t before = _stream.avail_out;
        const int result = inflate(&_stream, Z_BLOCK);
        const size_t given = before - _stream.avail_out;
        _lines.Text({from, given});
        if (PassedFlush(given)) _lines.Flush();
        const bool starved = result == Z_BUF_ERROR;
        const bool isBetweenBlocks = result == Z_OK && (_stream.data_type & kAtBlockEnd) != 0;
        if ((result == Z_OK || starved) && (hasInput || isBetweenBlocks)) continue;
        _failed = result != Z_OK && result != Z_STREAM_END && !starved;
        _atEnd = result != Z_OK || _stream.avail_out > 0;
        break;
    }
    const size_t count = room - _stream.avail_out;
    _consumed = _read - _stream.avail_in;
    _textLeft -= count;
    if (_textLeft == 0) _atEnd = true;
    return {reinterpret_cast<const char*>(_text.get()), count};
}

uint64_t PayloadReader::TextUpToLastFlush(const Payload& payload) {
    Begin(payload);
    _endsAtFlush = false;
    uint64_t text = 0, textAtFlush = 0;
    _consumedAtFlush = 0;
    for (;;) {
        const bool hasInput = _stream.avail_in > 0 || Refill();
        _stream.next_out = _text.get();
        _stream.avail_out = kTextChunk;
        const int result = inflate(&_stream, Z_BLOCK);
        _consumed = _read - _stream.avail_in;
        const size_t given = kTextChunk - _stream.avail_out;
        text += given;
        if (result == Z_BUF_ERROR && !hasInput) {
            _endsAtFlush = _consumedAtFlush == _consumed;
            return text;
        }
        if (result != Z_OK && result != Z_BUF_ERROR) {
            _failed = result != Z_STREAM_END;
            _endsAtFlush = !_failed && _consumed == payload.size;
            return _endsAtFlush ? text : textAtFlush;
        }
        if (!PassedFlush(given)) continue;
        textAtFlush = text;
        _consumedAtFlush = _consumed;
    }
}

}  // namespace OrvaneLog
