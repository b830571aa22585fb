#include "Storage/Log/LogBuffer.h"

#include <atomic>
#include <cstring>

#include "Base/Assert.h"
#include "Storage/Log/LogRecord.h"

namespace Quern {
namespace {

constexpr int kWindowBits = -15;  // raw deflate
constexpr int kMemoryLevel = 9;
constexpr char kZlibVersion[] = "1.2.3";

}  // namespace

LogBuffer::LogBuffer(void* buffer, size_t length, bool compress, const char* publicKey)
    : _buffer(buffer, length), _compress(compress), _crypt(std::make_unique<LogCrypt>(publicKey)) {
    Fix();
}

LogBuffer::~LogBuffer() {
    if (_stream.state) deflateEnd(&_stream);
}

void LogBuffer::Fix() {
    bool compressed;
    uint32_t length = 0;
    const bool isLeftOver = _crypt->Fix(_buffer.Ptr(), _buffer.Length(), compressed, length);
    const size_t end = isLeftOver ? LogCrypt::GetHeaderLen() + static_cast<size_t>(length) : 0;
    _buffer.Length(static_cast<off_t>(end), end);
}

bool LogBuffer::Reset() {
    Clear();
    if (_compress) {
        _stream.zalloc = nullptr;
        _stream.zfree = nullptr;
        _stream.opaque = nullptr;
        if (deflateInit2_(&_stream, Z_BEST_COMPRESSION, Z_DEFLATED, kWindowBits, kMemoryLevel, Z_DEFAULT_STRATEGY,
                          kZlibVersion, sizeof _stream) != Z_OK)
            return false;
    }
    if (_journal) _journal->ForgetTail();
    _crypt->SetHeaderInfo(_buffer.Ptr(), _compress);
    _buffer.Length(LogCrypt::GetHeaderLen(), LogCrypt::GetHeaderLen());
    return true;
}

bool LogBuffer::Deflate(const void* data, size_t length, size_t& written) {
    const size_t room = _buffer.MaxLength() - _buffer.Length();
    _stream.next_in = static_cast<Bytef*>(const_cast<void*>(data));
    _stream.avail_in = static_cast<uInt>(length);
    _stream.next_out = _buffer.PosPtr();
    _stream.avail_out = static_cast<uInt>(room);
    if (deflate(&_stream, Z_SYNC_FLUSH) != Z_OK) return false;
    written = room - _stream.avail_out;
    return true;
}

bool LogBuffer::Write(const void* data, size_t length) {
    if (!data || length == 0) return false;
    if (_buffer.Length() == 0 && !Reset()) return false;

    const size_t before = _buffer.Length();
    size_t written = length;
    if (!_compress)
        _buffer.Write(data, length);
    else if (!Deflate(data, length, written))
        return false;

    // The new bytes complete the group that the tail of the last write began. They are encrypted where they lie; the
    // header's length, moved on last, is what makes them part of the record.
    const size_t start = before - _remain;
    const size_t span = _remain + written;
    _buffer.Length(static_cast<off_t>(start + span), start + span);
    uint8_t* const group = _buffer.Ptr() + start;
    if (_journal && _remain > 0 && span >= kLogTeaGroup) _journal->KeepTail(_buffer.Ptr(), group);
    _remain = _crypt->CryptInPlace(group, span);
    LogCrypt::UpdateLogLen(_buffer.Ptr(), static_cast<uint32_t>(written));
    return true;
}

bool LogBuffer::Write(const void* data, size_t length, AutoBuffer& out) {
    if (!data || length == 0) return false;
    _crypt->CryptSyncLog(data, length, out);
    return true;
}

void LogBuffer::Flush(AutoBuffer& out) {
    if (_compress && _stream.state) deflateEnd(&_stream);
    if (LogCrypt::GetLogLen(_buffer.Ptr(), _buffer.Length()) != 0) {
        Close();
        if (_journal) _journal->Stage(_buffer.Ptr(), _buffer.Length());
        out.Write(_buffer.Ptr(), _buffer.Length());
    }
    Clear();
}

void LogBuffer::Close() {
    ORVANE_ASSERT_TEXT(_buffer.Length() >= LogCrypt::GetHeaderLen(), "buff_.Length() >= log_crypt_->GetHeaderLen()");
    size_t end = _buffer.Length();
    if (end == _buffer.MaxLength()) {  // filled to the brim: the payload's last byte makes room for the tail
        --end;
        LogCrypt::UpdateLogLen(_buffer.Ptr(), static_cast<uint32_t>(-1));
    }
    LogCrypt::UpdateLogHour(_buffer.Ptr());
    LogCrypt::SetTailerInfo(_buffer.Ptr() + end);
    _buffer.Length(static_cast<off_t>(end + LogCrypt::GetTailerLen()), end + LogCrypt::GetTailerLen());
}

void LogBuffer::Clear() {
    if (_buffer.Length() > 0) {
        _buffer.Ptr()[LogRecord::kMagicAt] = 0;  // first of all: without its magic the block is empty
        std::atomic_signal_fence(std::memory_order_seq_cst);
        memset(_buffer.Ptr(), 0, _buffer.Length());
    }
    _buffer.Length(0, 0);
    _remain = 0;
}

bool LogBuffer::GetPeriodLogs(const char* path, int beginHour, int endHour, unsigned long& beginPos,
                              unsigned long& endPos, std::string& error) {
    return LogCrypt::GetPeriodLogs(path, beginHour, endHour, beginPos, endPos, error);
}

}  // namespace Quern
