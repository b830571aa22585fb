#include "Storage/Log/LogCrypt.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <ctime>

#include "Base/LocalClock.h"
#include "Serializer/Codec/Hex.h"
#include "Storage/Log/LogRecord.h"

namespace Quern {
namespace {

using namespace LogRecord;

constexpr size_t kKeyDigits = 2 * kPublicKeyLength;
constexpr size_t kKeyTextBound = 256;

uint8_t CurrentHour() {
    return static_cast<uint8_t>(LocalTime(time(nullptr)).tm_hour);
}

uint8_t MagicOf(bool compress, bool hasKey) {
    if (hasKey) return compress ? kMagicCompressedEncrypted : kMagicPlainWithKey;
    return compress ? kMagicCompressed : kMagicPlain;
}

bool HasHeader(const uint8_t* data, size_t length) {
    return data && length >= kHeaderLength && IsMagic(data[kMagicAt]);
}

}  // namespace

LogCrypt::LogCrypt(const char* publicKey) {
    if (!publicKey || strnlen(publicKey, kKeyTextBound) != kKeyDigits) return;
    CurvePublicKey peer;
    if (!HexToBuffer(publicKey, peer.data(), peer.size())) return;
    CurvePrivateKey own;
    CurveSecret secret;
    _hasKey = MakeCurveKey(_publicKey, own) && CurveSharedSecret(peer, own, secret);
    if (_hasKey)
        std::copy_n(secret.begin(), _key.size(), _key.begin());
    else
        _publicKey.fill(0);
    explicit_bzero(own.data(), own.size());
    explicit_bzero(secret.data(), secret.size());
}

bool LogCrypt::GetLogHour(const uint8_t* data, size_t length, int& beginHour, int& endHour) {
    if (!data || length < kHeaderLength) return false;
    const uint8_t magic = data[kMagicAt];
    if (magic != kMagicPlainWithKey && magic != kMagicCompressedEncrypted) return false;
    beginHour = static_cast<int8_t>(data[kBeginHourAt]);
    endHour = static_cast<int8_t>(data[kEndHourAt]);
    return true;
}

void LogCrypt::UpdateLogHour(uint8_t* data) {
    data[kEndHourAt] = CurrentHour();
}

uint32_t LogCrypt::GetLogLen(const uint8_t* data, size_t length) {
    return HasHeader(data, length) ? LoadU32(data + kLenAt) : 0;
}

void LogCrypt::UpdateLogLen(uint8_t* data, uint32_t add) {
    std::atomic_signal_fence(std::memory_order_release);  // the bytes that the length covers are stored before it
    StoreU32(data + kLenAt, LoadU32(data + kLenAt) + add);
}

void LogCrypt::SetHeaderInfo(uint8_t* data, bool compress) {
    _lastSeq = GetSeq(compress);
    StoreU16(data + kSeqAt, _lastSeq);
    data[kBeginHourAt] = data[kEndHourAt] = CurrentHour();
    StoreU32(data + kLenAt, 0);
    memcpy(data + kPublicKeyAt, _publicKey.data(), _publicKey.size());
    std::atomic_signal_fence(std::memory_order_release);  // the magic makes it a header, so it comes last
    data[kMagicAt] = MagicOf(compress, _hasKey);
}

void LogCrypt::SetTailerInfo(uint8_t* data) {
    *data = kMagicEnd;
}

void LogCrypt::CryptSyncLog(const void* data, size_t length, AutoBuffer& out) {
    out.AllocWrite(length + kHeaderLength + kTailLength);
    uint8_t* const record = out.PosPtr();
    SetHeaderInfo(record, false);
    UpdateLogLen(record, static_cast<uint32_t>(length));
    SetTailerInfo(record + kHeaderLength + length);
    memcpy(record + kHeaderLength, data, length);
}

void LogCrypt::CryptAsyncLog(const void* data, size_t length, AutoBuffer& out, size_t& remain) {
    out.AllocWrite(length);
    if (length > 0) memcpy(out.Ptr(), data, length);
    remain = CryptInPlace(out.Ptr(), length);
}

size_t LogCrypt::CryptInPlace(uint8_t* data, size_t length) const {
    if (!_hasKey) return 0;
    LogTeaEncrypt(data, length, _key);
    return length % kLogTeaGroup;
}

bool LogCrypt::Fix(const uint8_t* data, size_t length, bool& compressed, uint32_t& payloadLength) {
    if (!HasHeader(data, length)) return false;
    compressed = IsCompressed(data[kMagicAt]);
    payloadLength = LoadU32(data + kLenAt);
    _lastSeq = LoadU16(data + kSeqAt);
    return true;
}

uint16_t LogCrypt::GetSeq(bool compress) {
    if (!compress) return 0;
    if (++_seq == 0) ++_seq;
    return _seq;
}

}  // namespace Quern
