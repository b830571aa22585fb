#include "Storage/Log/LogStore.h"

#include <pthread.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "Serializer/Codec/PeerKey.h"
#include "Storage/File/CPath.h"
#include "Storage/Log/LogRecord.h"
#include "Storage/Log/LogThread.h"
#include "Storage/Log/Logger.h"
#include "Storage/Log/MappedFile.h"
#include "System/Application/BackgroundState.h"
#include "System/Thread/ThreadName.h"

namespace Quern {
namespace {

constexpr size_t kMarkerLength = BUFFER_BLOCK_LENTH * 4 / 5;  // from here on markers take the place of lines
constexpr size_t kFlushUnit = 2048;
constexpr size_t kFlushUnits = 25;
constexpr int kMaxPendingLines = 1000;
constexpr size_t kPathCapacity = 512;
constexpr char kFlushThreadName[] = "XLogThread";
constexpr char kBeginOfRestoring[] = "----------- begin of mmap -----------\n";
constexpr char kEndOfRestoring[] = "----------- end of mmap -----------\n";

// 51200 bytes, a third of the block, wake the flush thread.
bool IsDue(size_t blockLength) {
    return blockLength / kFlushUnit >= kFlushUnits;
}

}  // namespace

LogStore::LogStore(const LogStoreOptions& options)
    : _options(options), _fileLogger(options.module.c_str(), options.mode, options.sizeLimitMiB, options.exceedOp) {}

// Maps "<cache>/<module>.<extension>". Without it lines die with the process, so each failure is told.
void* LogStore::MapBesideTheLogs(const char* extension, size_t size) const {
    const char* cache = CPath::GetCachePath();
    if (!cache || !*cache) {
        ORVANE_CONSOLE(kLogError, "map %s.%s fail: there is no cache path", _options.module.c_str(), extension);
        return nullptr;
    }
    char path[kPathCapacity];
    const int length = snprintf(path, sizeof path, "%s/%s.%s", cache, _options.module.c_str(), extension);
    if (length < 0 || static_cast<size_t>(length) >= sizeof path) {  // cut, it would name another file
        ORVANE_CONSOLE(kLogError, "map %s.%s fail: its path has %d bytes, %zu are too many", _options.module.c_str(),
                       extension, length, sizeof path);
        return nullptr;
    }
    void* memory = nullptr;
    return open_mmap_file(path, &memory, size) == 1 ? memory : nullptr;
}

bool LogStore::MapBlock() {
    void* block = MapBesideTheLogs("mmap3", BUFFER_BLOCK_LENTH);
    const bool isMapped = block != nullptr;
    if (!isMapped) {
        const char* const cache = CPath::GetCachePath();
        _isWithoutFolder.store(!cache || access((std::string(cache) + "/.").c_str(), W_OK) != 0,
                               std::memory_order_relaxed);
        _heapBlock = std::make_unique<uint8_t[]>(BUFFER_BLOCK_LENTH);
        block = _heapBlock.get();
    } else if (void* journal = MapBesideTheLogs("journal3", sizeof(BlockJournalLayout))) {
        _journal = std::make_unique<BlockJournal>(journal);
        _journal->Reconcile(static_cast<uint8_t*>(block), BUFFER_BLOCK_LENTH);
    }
    _logBuffer = std::make_unique<LogBuffer>(block, BUFFER_BLOCK_LENTH, _options.compress,
                                             _options.crypt ? PeerPublicKey() : "");
    _logBuffer->SetJournal(_journal.get());
    _isMapped.store(isMapped, std::memory_order_relaxed);
    return isMapped;
}

bool LogStore::OpenBlock(const std::shared_ptr<LogStore>& store, std::atomic<LogStore*>& published) {
    bool isMapped;
    {
        AutoBuffer block;
        bool isRestoring;
        {
            const CCritical guard(&store->_mutex);
            published.store(store.get(), std::memory_order_release);
            isMapped = store->MapBlock();
            isRestoring = store->RestoreStaged();
            store->_logBuffer->Flush(block);
        }
        // From here on other threads' lines enter the block, which is empty. They reach the file behind the last tip,
        // since the flush thread has yet to start.
        store->RestoreBlock(block, isRestoring);
    }
    auto* shared = new std::shared_ptr<LogStore>(store);
    if (!LogCreateThread(FlushThread, kFlushThreadName, shared)) delete shared;
    return isMapped;
}

void LogStore::CloseBlock() {
    const CCritical guard(&_mutex);
    _logBuffer.reset();
}

// Appends the record that a dead process had staged. It goes before the block, whose lines are younger. The caller
// holds the log mutex until the record is in the file, for two reasons: the journal has room for one record, so the
// block cannot be closed before; and no new line may enter the block before the old one is out of it. Returns whether
// the first tip has been written.
//
// A kill may tear a tip. The reader takes the torn bytes for the beginning of what is appended behind them, so nothing
// is lost: the next process writes the tip again, since it finds everything still to be restored.
bool LogStore::RestoreStaged() {
    size_t length = 0;
    const uint8_t* const record = _journal ? _journal->Staged(length) : nullptr;
    if (!record || !_journal->ResolveStaged(_fileLogger.Directory().c_str())) return false;
    AutoBuffer staged;
    staged.Write(record, length);
    const bool isBlock = LogRecord::IsCompressed(record[LogRecord::kMagicAt]);
    if (isBlock) WriteTips(nullptr, kBeginOfRestoring);
    AppendStaged(staged.Ptr(), staged.Length());  // or the tip that the restoring before this one had yet to end with
    return isBlock;
}

void LogStore::RestoreBlock(const AutoBuffer& block, bool isRestoring) {
    if (block.Length() > 0) {
        if (!isRestoring) WriteTips(nullptr, kBeginOfRestoring);
        AppendStaged(block.Ptr(), block.Length());
    } else if (!isRestoring) {
        return;
    }
    WriteTips(_journal.get(), kEndOfRestoring);  // behind it come lines: it goes by way of the journal
}

void LogStore::WriteTips(BlockJournal* journal, const char* format, ...) {
    char text[kLogLineCapacity];
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    AutoBuffer record;
    {
        const CCritical guard(&_mutex);
        _logBuffer->Write(text, strlen(text), record);
    }
    if (journal) journal->Stage(record.Ptr(), record.Length());
    _fileLogger.Log2File(record.Ptr(), record.Length(), journal);
    if (journal) journal->Finish();
}

void LogStore::AppendStaged(const void* data, size_t length) {
    _fileLogger.Log2File(data, length, _journal.get());
    if (_journal) _journal->Finish();
}

LogKeeping LogStore::Keeping() const {
    if (_fileLogger.IsFailing() || _isWithoutFolder.load(std::memory_order_relaxed)) return LogKeeping::kNotKept;
    if (_options.mode == kAppendSync) return LogKeeping::kBuffered;
    if (isIosBackground()) return LogKeeping::kWaits;
    return _isMapped.load(std::memory_order_relaxed) ? LogKeeping::kDurable : LogKeeping::kBuffered;
}

void LogStore::Append(FormattedLine& line) {
    if (_options.mode == kAppendSync) {
        SyncAppend(line);
        return;
    }
    try {
        AsyncAppendAdapter(line);
    } catch (...) {
        ORVANE_CONSOLE(kLogError, "XLog AsyncAppend catch Exception.");
    }
}

void LogStore::SyncAppend(FormattedLine& line) {
    // The line and its newline share the capacity of a line: the longest one goes without.
    if (line.length < kLogLineCapacity - 1) line.text[line.length++] = '\n';
    line.text[line.length] = '\0';
    _fileLogger.Log2File(line.text, line.length);
}

void LogStore::AsyncAppendAdapter(FormattedLine& line) {
    if (line.length == 0 || line.text[line.length - 1] != '\n') line.text[line.length++] = '\n';
    if (isIosBackground()) {
        HoldBack(line);
        return;
    }
    if (_hasPendingLines.load(std::memory_order_acquire)) TakeHeldBack();
    AsyncAppend(line.text, line.length);
}

void LogStore::HoldBack(const FormattedLine& line) {
    const CCritical guard(&_pendingMutex);
    if (_pendingLines.Count() >= kMaxPendingLines) return;
    _pendingLines.Add(new AString(line.text, static_cast<int>(line.length)), true);
    _hasPendingLines.store(true, std::memory_order_release);
}

// The log mutex is taken for each line, not for all of them: the flush thread gets in between, and empties a block that
// a thousand lines would fill up to the markers. Other threads get in between as well. The new line of one may so enter
// the block before a line of its own that was held back; the times in the lines tell.
void LogStore::TakeHeldBack() {
    AArray lines;
    {
        const CCritical guard(&_pendingMutex);
        lines = _pendingLines;
        _pendingLines.RemoveAll();
        _hasPendingLines.store(false, std::memory_order_relaxed);
    }
    for (int i = 0; i < lines.Count(); ++i) {
        const AString* line = lines.AStringAtIndex(i);
        AsyncAppend(line->c_str(), static_cast<size_t>(line->length()));
    }
}

void LogStore::AsyncAppend(const char* line, size_t length) {
    const CCritical guard(&_mutex);
    if (!_logBuffer) return;
    char marker[128];
    const size_t blockLength = _logBuffer->GetData().Length();
    if (blockLength >= kMarkerLength) {
        length = static_cast<size_t>(snprintf(marker, sizeof marker,
                                              "[F][ sg_buffer_async.Length() >= BUFFER_BLOCK_LENTH*4/5, len: %d\n",
                                              static_cast<int>(blockLength)));
        line = marker;
    }
    if (_logBuffer->Write(line, length) && IsDue(_logBuffer->GetData().Length())) _condition.WakeUp();
}

bool LogStore::Flush() {
    AutoBuffer block;
    {
        const CCritical guard(&_mutex);
        if (!_logBuffer) return false;
        _logBuffer->Flush(block);
    }
    if (block.Length() > 0) AppendStaged(block.Ptr(), block.Length());
    return true;
}

bool LogStore::IsFlushDue() {
    const CCritical guard(&_mutex);
    return _logBuffer && IsDue(_logBuffer->GetData().Length());
}

void* LogStore::FlushThread(void* argument) {
    const std::unique_ptr<std::shared_ptr<LogStore>> owner(static_cast<std::shared_ptr<LogStore>*>(argument));
    LogStore& store = **owner;
    pthread_detach(pthread_self());
    set_thread_name(kFlushThreadName);
    for (;;) {
        if (!isIosBackground() && !store.Flush()) return nullptr;
        // Lines that came while the copy went to the file woke nobody. Those that come between this look and the wait
        // leave it to the next line.
        if (!isIosBackground() && store.IsFlushDue()) continue;
        store._condition.TimeWait(store._options.threadWaitMilliseconds);
    }
}

}  // namespace Quern
