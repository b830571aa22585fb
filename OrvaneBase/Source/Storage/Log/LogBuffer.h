// The block: lines deflated, and encrypted where there is a key, one behind the other into memory that may be a mapped
// file.
#ifndef ORVANE_STORAGE_LOG_LOG_BUFFER_H
#define ORVANE_STORAGE_LOG_LOG_BUFFER_H

#include <zlib.h>

#include <cstddef>
#include <memory>
#include <string>

#include "Storage/Log/AutoBuffer.h"
#include "Storage/Log/BlockJournal.h"
#include "Storage/Log/LogCrypt.h"
#include "Storage/Log/PtrBuffer.h"

namespace Quern {

// Empty (length 0), open (a record is being written), or left-over (a dead process's record was found; it is only ever
// flushed). Not thread-safe: used under the log mutex.
class LogBuffer {
public:
    // Attaches to `buffer`, which it never frees, and takes a left-over record in. A header in it whose length exceeds
    // the block ends the process.
    LogBuffer(void* buffer, size_t length, bool compress, const char* publicKey);
    ~LogBuffer();
    LogBuffer(const LogBuffer&) = delete;
    LogBuffer& operator=(const LogBuffer&) = delete;

    // The journal that keeps the block whole across a kill; not owned, null for none.
    void SetJournal(BlockJournal* journal) { _journal = journal; }

    PtrBuffer& GetData() { return _buffer; }

    // Appends to the block. False, and the data lost, for empty data or a full block; data that fits in part is cut.
    bool Write(const void* data, size_t length);
    // Wraps the data as a plain record of its own in `out`, past the block. False for empty data.
    bool Write(const void* data, size_t length, AutoBuffer& out);
    // Closes the block, appends its record to `out`, and empties the block. With a journal the record is staged there
    // before the block is emptied.
    void Flush(AutoBuffer& out);

    // As LogCrypt::GetPeriodLogs.
    static bool GetPeriodLogs(const char* path, int beginHour, int endHour, unsigned long& beginPos,
                              unsigned long& endPos, std::string& error);

private:
    // Takes the record of a dead process in, if the memory begins with the header of one.
    void Fix();
    // Begins a record: the header, and with compression a stream of its own. False if there is no memory for the
    // stream.
    bool Reset();
    // Ends the record that is open: the hour of the end, and the byte behind the payload.
    void Close();
    // Makes the block empty and its bytes zero.
    void Clear();
    // Deflates to the block's end, so that what was written so far can be inflated by itself. `written` are the bytes
    // that it took there. False for a full block.
    bool Deflate(const void* data, size_t length, size_t& written);

    PtrBuffer _buffer;
    bool _compress;
    z_stream _stream{};
    std::unique_ptr<LogCrypt> _crypt;
    size_t _remain = 0;  // bytes at the block's end that are not encrypted yet, for want of a whole group
    BlockJournal* _journal = nullptr;
};

}  // namespace Quern

#endif
