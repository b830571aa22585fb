// Record headers and the encryption of payloads.
#ifndef ORVANE_STORAGE_LOG_LOG_CRYPT_H
#define ORVANE_STORAGE_LOG_LOG_CRYPT_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "Serializer/Codec/EllipticCurve.h"
#include "Storage/Log/AutoBuffer.h"
#include "Storage/Log/LogRecord.h"
#include "Storage/Log/LogTea.h"

namespace Quern {

// One writer's key and sequence numbers. Not thread-safe: used under the log mutex.
class LogCrypt {
public:
    // `publicKey` is the reader's public key as 128 hexadecimal digits. With anything else, or if a step of the key
    // agreement fails, the object has no key and its records are not encrypted.
    explicit LogCrypt(const char* publicKey);

    static constexpr uint32_t GetHeaderLen() { return LogRecord::kHeaderLength; }
    static constexpr uint32_t GetTailerLen() { return LogRecord::kTailLength; }

    bool HasKey() const { return _hasKey; }

    // The hours of an encrypted writer's record. False for any magic but 6 and 7.
    static bool GetLogHour(const uint8_t* data, size_t length, int& beginHour, int& endHour);
    // Sets the end hour to the current local hour.
    static void UpdateLogHour(uint8_t* data);
    // The payload's length; 0 if there is no header.
    static uint32_t GetLogLen(const uint8_t* data, size_t length);
    // Adds to the payload's length, in a single store.
    static void UpdateLogLen(uint8_t* data, uint32_t add);

    // Writes a header with the next sequence number, the current hour and length 0.
    void SetHeaderInfo(uint8_t* data, bool compress);
    // Writes the byte that ends a record.
    static void SetTailerInfo(uint8_t* data);

    // Wraps text as one plain record, with a header of its own.
    void CryptSyncLog(const void* data, size_t length, AutoBuffer& out);
    // Encrypts the whole groups of `data` into `out`, copies the rest, and says how many bytes that rest has (0 without
    // a key, when all is copied).
    void CryptAsyncLog(const void* data, size_t length, AutoBuffer& out, size_t& remain);
    // The same where the data lies. Returns the rest.
    size_t CryptInPlace(uint8_t* data, size_t length) const;

    // Reads a left-over header: whether there is one, whether it is compressed, its payload's length. Takes its
    // sequence number over as the last one.
    bool Fix(const uint8_t* data, size_t length, bool& compressed, uint32_t& payloadLength);

    // The next sequence number of a compressed block, 1 to 65535 and then 1 again; 0 for a plain record.
    uint16_t GetSeq(bool compress);
    uint16_t LastSeq() const { return _lastSeq; }

    // Finds the byte range of a log file that covers the hours from beginHour up to endHour. Damage is skipped byte by
    // byte. Reads the hours of encrypted writers' records only: the scan of any other file ends at its first record.
    // On false, `error` has text added to it. (The body is in LogPeriod.cpp.)
    static bool GetPeriodLogs(const char* path, int beginHour, int endHour, unsigned long& beginPos,
                              unsigned long& endPos, std::string& error);

private:
    uint16_t _lastSeq = 0;
    LogTeaKey _key{};
    CurvePublicKey _publicKey{};
    bool _hasKey = false;
    uint16_t _seq = 0;
};

}  // namespace Quern

#endif
