// The companion of the mapped block: what keeps the block whole across a kill at any instruction.
//
// The block alone has two windows in which a killed process would lose lines that the caller had been told are safe:
//
//   * An encrypted write replaces the plain tail of the line before it by a whole encrypted group, and only then says
//     so in the header's length. The journal holds the tail as it was; until the length moves on, it is put back.
//   * A flush empties the block before the copy has reached the log file. The journal holds the closed block until it
//     is there, and knows where in which file it begins, so that it is written once, whole, whenever the process died.
//
// It lies beside the block, in a mapped file of its own, and is opened by the same process alone. A machine that loses
// its power keeps an arbitrary choice of the pages, so what the journal holds is believed only as far as it proves
// itself: the staged record by its checksum, the tail by the writer's key. The format is told in Docs/LogFormat.md. Not
// thread-safe: the undo is used under the log mutex; staging and the append follow each other on the one thread that
// flushes.
#ifndef ORVANE_STORAGE_LOG_BLOCK_JOURNAL_H
#define ORVANE_STORAGE_LOG_BLOCK_JOURNAL_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "Storage/Log/LogRecord.h"

namespace Quern {

// The journal's bytes, little-endian. A zeroed one is an empty one.
struct BlockJournalLayout {
    static constexpr char kSignature[8] = {'O', 'R', 'V', 'J', 'R', 'N', 'L', '3'};
    static constexpr size_t kNameCapacity = 128;
    static constexpr size_t kRecordCapacity = LogRecord::kBlockLength;
    static constexpr int64_t kNotBegun = -1;

    char signature[8];
    uint64_t undoId;        // the block's sequence number << 32 | payload length for which undoTail holds; 0: none
    uint8_t undoTail[8];    // the group that begins at the payload's last whole group's end, as it was
    uint32_t recordLength;  // of the closed block below; 0: none
    uint32_t recordCrc;     // CRC-32 of its bytes
    int64_t fileOffset;     // where the record begins in the file; kNotBegun before the append
    char fileName[kNameCapacity];                  // the file's name in the module's directory, null-terminated
    uint8_t undoKey[LogRecord::kPublicKeyLength];  // the public key of the block for which undoTail holds
    uint8_t padding[24];
    uint8_t record[kRecordCapacity];
};
static_assert(offsetof(BlockJournalLayout, record) == 256 &&
              sizeof(BlockJournalLayout) == 256 + LogRecord::kBlockLength);

class BlockJournal {
public:
    // `memory` holds sizeof(BlockJournalLayout) bytes and outlives the object. Foreign or damaged content counts as an
    // empty journal.
    explicit BlockJournal(void* memory);

    // Before anything else looks at a left-over block: puts its last acknowledged bytes back, and empties it if it was
    // on its way to the file already (it is the staged record then).
    void Reconcile(uint8_t* block, size_t size);

    // Says that no tail is held: before the header of a new block is written.
    void ForgetTail();
    // Holds the group at `group` for the state of the block that its header shows.
    void KeepTail(const uint8_t* block, const uint8_t* group);

    // Takes a closed block. From the return on it will reach the file, whatever becomes of the process.
    void Stage(const uint8_t* record, size_t length);
    // Tells where the staged record is about to be appended.
    void BeginAppend(const char* fileName, int64_t fileOffset);
    // The staged record is where it belongs.
    void Finish();

    // The staged record, or null.
    const uint8_t* Staged(size_t& length) const;
    // What of the staged record the file has that it was meant for, and from where on. Changes nothing.
    enum class InFile { kNothing, kPart, kWhole };
    struct StagedPlace {
        InFile inFile = InFile::kNothing;
        std::string path;
        uint64_t offset = 0;
    };
    StagedPlace FindStaged(const std::string& directory) const;
    // After a restart: settles what the dead process left staged. If its file has the whole record, drops it; if its
    // file ends in a part of it, cuts that part off. Returns whether the record still has to be appended.
    bool ResolveStaged(const std::string& directory);

private:
    InFile LookForStaged(const std::string& path) const;

    BlockJournalLayout* _layout;
};

}  // namespace Quern

#endif
