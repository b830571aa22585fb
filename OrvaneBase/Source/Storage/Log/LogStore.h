// Where a logger's lines go once it is initialised: the plain file, or the block and the thread that drains it.
#ifndef ORVANE_STORAGE_LOG_LOG_STORE_H
#define ORVANE_STORAGE_LOG_LOG_STORE_H

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "Base/Container/AArray.h"
#include "Base/XLog.h"
#include "Storage/Log/BlockJournal.h"
#include "Storage/Log/FileLogger.h"
#include "Storage/Log/LogBuffer.h"
#include "System/Thread/Condition.h"

namespace Quern {

// The block's length under the name that the markers of a full block print, misspelling and all.
constexpr size_t BUFFER_BLOCK_LENTH = LogRecord::kBlockLength;

// One line on its way, with room behind it for the newline that the store adds.
struct FormattedLine {
    char text[kLogLineCapacity + 1];
    size_t length = 0;
};

// What becomes of a line, from the least to the most; the numbers are those of Orvane/Game.h.
enum class LogKeeping { kNotKept = 0, kWaits = 1, kBuffered = 2, kDurable = 3 };

// What a logger has settled when it is initialised; a store keeps it for its life.
struct LogStoreOptions {
    std::string module;  // names the block's file and the folder of the log files
    TAppenderMode mode;
    bool compress;
    bool crypt;                       // encrypts for the holder of the build's peer key (Serializer/Codec/PeerKey.h)
    int sizeLimitMiB;                 // of one log file
    LogExceedOp exceedOp;             // what happens at that limit
    uint32_t threadWaitMilliseconds;  // how long the flush thread sleeps if nobody wakes it
};

class LogStore {
public:
    explicit LogStore(const LogStoreOptions& options);

    // Modes 1 and 2: opens the block, brings back what a dead process left in it, and starts the flush thread, which
    // shares the ownership of the store. Other threads find the store in `published` before there is a block; their
    // lines wait for the log mutex meanwhile. Returns whether the block lies in a mapped file.
    static bool OpenBlock(const std::shared_ptr<LogStore>& store, std::atomic<LogStore*>& published);
    // Lets the flush thread end at its next turn; what is in the block stays there.
    void CloseBlock();

    // Any thread. Appends the line, in the form of the mode. `line` has room for the newline. In modes 1 and 2 it waits
    // for nothing but the log mutex: a block that fills faster than it is flushed loses lines to the markers.
    void Append(FormattedLine& line);

    // What becomes of a line that is appended now. Any thread, without a lock.
    LogKeeping Keeping() const;

    // The log mutex: guards the block and the callback. Recursive: a callback may log.
    CMutex& Mutex() { return _mutex; }

private:
    // Mode 0: to the file, on the caller's thread.
    void SyncAppend(FormattedLine& line);
    // Modes 1 and 2: to the block, behind the lines that still wait. While the application is in the background the
    // line waits, too: in memory, with a thousand at most, and what comes then is dropped.
    void AsyncAppendAdapter(FormattedLine& line);
    // To the block, under the log mutex. A block that is four fifths full gets a marker instead.
    void AsyncAppend(const char* line, size_t length);
    void HoldBack(const FormattedLine& line);
    void TakeHeldBack();

    void* MapBesideTheLogs(const char* extension, size_t size) const;
    // Makes block and journal, mapped or, where that fails, a block on the heap. REQUIRES: the log mutex.
    bool MapBlock();
    bool RestoreStaged();
    // Appends what a dead process left in its block, between two tips: lines that tell a reader where it begins and
    // ends. `isRestoring`: the first tip is in the file.
    void RestoreBlock(const AutoBuffer& block, bool isRestoring);
    // Appends a line of the store's own to the file, past the block; with a journal so that a kill does not tear it.
    void WriteTips(BlockJournal* journal, const char* format, ...) __attribute__((format(printf, 3, 4)));
    // Appends a record that is staged in the journal, if there is one, and frees the journal for the next.
    void AppendStaged(const void* data, size_t length);
    // Moves what is in the block to the file, which is written without the log mutex. False once the store is closed.
    bool Flush();
    bool IsFlushDue();
    static void* FlushThread(void* argument);

    const LogStoreOptions _options;
    CMutex _mutex{true};
    AFileLogger _fileLogger;
    CCondition _condition{&_mutex, false};  // wakes the flush thread

    // The block; all under _mutex.
    std::unique_ptr<uint8_t[]> _heapBlock;  // where no file can be mapped; such a block does not survive
    std::unique_ptr<BlockJournal> _journal;
    std::unique_ptr<LogBuffer> _logBuffer;

    std::atomic<bool> _isMapped{false};         // whether the block lies in a file
    std::atomic<bool> _isWithoutFolder{false};  // whether it does not because no file can be made

    CMutex _pendingMutex{true};
    AArray _pendingLines;  // of AString; under _pendingMutex
    std::atomic<bool> _hasPendingLines{false};
};

}  // namespace Quern

#endif
