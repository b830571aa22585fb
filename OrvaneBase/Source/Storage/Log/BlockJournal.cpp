#include "Storage/Log/BlockJournal.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <vector>

#include "Storage/Log/LogRecord.h"
#include "Storage/Log/LogTea.h"

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the journal is mapped as it lies in the file");

namespace Quern {
namespace {

using namespace LogRecord;

// Stores before this come before stores after it in the program, and so in what a killed process leaves behind.
void StoreBarrier() {
    std::atomic_signal_fence(std::memory_order_seq_cst);
}

uint64_t StateOf(const uint8_t* block) {
    return static_cast<uint64_t>(LoadU16(block + kSeqAt)) << 32 | LoadU32(block + kLenAt);
}

uint32_t CrcOf(const uint8_t* record, size_t length) {
    return static_cast<uint32_t>(crc32(0, record, static_cast<uInt>(length)));
}

// Whether the journal holds exactly one whole record. Nothing in the file is trusted.
bool HasSoundRecord(const BlockJournalLayout& layout) {
    const uint32_t length = layout.recordLength;
    return length >= kHeaderLength + kTailLength && length <= BlockJournalLayout::kRecordCapacity &&
           IsMagic(layout.record[kMagicAt]) &&
           LoadU32(layout.record + kLenAt) == length - kHeaderLength - kTailLength &&
           CrcOf(layout.record, length) == layout.recordCrc;
}

class Descriptor {
public:
    explicit Descriptor(int descriptor) : _descriptor(descriptor) {}
    ~Descriptor() {
        if (_descriptor >= 0) close(_descriptor);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    explicit operator bool() const { return _descriptor >= 0; }
    int operator*() const { return _descriptor; }

private:
    int _descriptor;
};

bool ReadAt(int descriptor, uint8_t* out, size_t length, off_t offset) {
    while (length > 0) {
        const ssize_t count = pread(descriptor, out, length, offset);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        out += count;
        offset += count;
        length -= static_cast<size_t>(count);
    }
    return true;
}

}  // namespace

BlockJournal::BlockJournal(void* memory) : _layout(static_cast<BlockJournalLayout*>(memory)) {
    const bool isOurs = memcmp(_layout->signature, BlockJournalLayout::kSignature, sizeof _layout->signature) == 0;
    if (!isOurs) {
        _layout->undoId = 0;
        _layout->recordLength = 0;
        StoreBarrier();
        memcpy(_layout->signature, BlockJournalLayout::kSignature, sizeof _layout->signature);
    }
    if (_layout->recordLength != 0 && !HasSoundRecord(*_layout)) _layout->recordLength = 0;
}

void BlockJournal::Reconcile(uint8_t* block, size_t size) {
    if (size < kHeaderLength || !IsMagic(block[kMagicAt])) return;
    const uint32_t length = LoadU32(block + kLenAt);
    if (length > size - kHeaderLength) return;

    const size_t tail = length % kLogTeaGroup;
    if (_layout->undoId != 0 && _layout->undoId == StateOf(block) &&
        memcmp(_layout->undoKey, block + kPublicKeyAt, kPublicKeyLength) == 0)
        memcpy(block + kHeaderLength + length - tail, _layout->undoTail, tail);

    const uint32_t staged = _layout->recordLength;
    if (staged == kHeaderLength + length + kTailLength && memcmp(block, _layout->record, staged - kTailLength) == 0)
        block[kMagicAt] = 0;
}

void BlockJournal::ForgetTail() {
    _layout->undoId = 0;
    StoreBarrier();
}

void BlockJournal::KeepTail(const uint8_t* block, const uint8_t* group) {
    memcpy(_layout->undoKey, block + kPublicKeyAt, kPublicKeyLength);  // the same in all blocks of one process
    memcpy(_layout->undoTail, group, sizeof _layout->undoTail);
    StoreBarrier();
    _layout->undoId = StateOf(block);
    StoreBarrier();
}

void BlockJournal::Stage(const uint8_t* record, size_t length) {
    if (length > BlockJournalLayout::kRecordCapacity) return;
    _layout->fileOffset = BlockJournalLayout::kNotBegun;
    memcpy(_layout->record, record, length);
    _layout->recordCrc = CrcOf(record, length);
    StoreBarrier();
    _layout->recordLength = static_cast<uint32_t>(length);
    StoreBarrier();
}

void BlockJournal::BeginAppend(const char* fileName, int64_t fileOffset) {
    strncpy(_layout->fileName, fileName, BlockJournalLayout::kNameCapacity - 1);
    _layout->fileName[BlockJournalLayout::kNameCapacity - 1] = '\0';
    StoreBarrier();
    _layout->fileOffset = fileOffset;
    StoreBarrier();
}

void BlockJournal::Finish() {
    StoreBarrier();
    _layout->recordLength = 0;
    StoreBarrier();
}

const uint8_t* BlockJournal::Staged(size_t& length) const {
    length = _layout->recordLength;
    return length > 0 ? _layout->record : nullptr;
}

BlockJournal::InFile BlockJournal::LookForStaged(const std::string& path) const {
    const off_t begin = _layout->fileOffset;
    // A name may be that of a pipe, which would wait for a writer.
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    struct stat status;
    if (!file || fstat(*file, &status) != 0 || !S_ISREG(status.st_mode) || status.st_size <= begin)
        return InFile::kNothing;
    const size_t length = _layout->recordLength;
    std::vector<uint8_t> found(std::min(length, static_cast<size_t>(status.st_size - begin)));
    if (!ReadAt(*file, found.data(), found.size(), begin) || memcmp(found.data(), _layout->record, found.size()) != 0)
        return InFile::kNothing;
    return found.size() == length ? InFile::kWhole : InFile::kPart;
}

BlockJournal::StagedPlace BlockJournal::FindStaged(const std::string& directory) const {
    const std::string name(_layout->fileName, strnlen(_layout->fileName, sizeof _layout->fileName));
    const bool hasBegun = _layout->recordLength > 0 && _layout->fileOffset >= 0;
    if (!hasBegun || name.empty() || name.find('/') != std::string::npos) return {};  // a name is no path
    const std::string path = directory + "/" + name;
    return {LookForStaged(path), path, static_cast<uint64_t>(_layout->fileOffset)};
}

bool BlockJournal::ResolveStaged(const std::string& directory) {
    if (_layout->recordLength == 0) return false;
    const StagedPlace place = FindStaged(directory);
    if (place.inFile == InFile::kWhole) {
        Finish();
        return false;
    }
    // What is appended behind a part of the record would be taken for the rest of it.
    if (place.inFile == InFile::kPart) (void)!truncate(place.path.c_str(), static_cast<off_t>(place.offset));
    _layout->fileOffset = BlockJournalLayout::kNotBegun;
    StoreBarrier();
    return true;
}

}  // namespace Quern
