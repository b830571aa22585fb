#include "Log/LeftOver.h"

#include <string.h>

#include <algorithm>
#include <filesystem>

#include "Log/BlockWalk.h"
#include "Log/LogFileName.h"
#include "Log/RecordWalk.h"
#include "Storage/Log/BlockJournal.h"

namespace OrvaneLog {
namespace {

namespace fs = std::filesystem;

// The journal's bytes; empty where there is none. Only a whole one is of use.
std::vector<uint8_t> ReadJournal(const fs::path& path) {
    std::vector<uint8_t> bytes;
    std::string ignored;
    std::error_code error;
    if (!fs::is_regular_file(path, error)) return bytes;
    if (const std::unique_ptr<ByteSource> source = OpenSource(path.string(), ignored)) {
        bytes.resize(sizeof(Quern::BlockJournalLayout));
        if (source->ReadAt(0, bytes.data(), bytes.size(), bytes.size()) < bytes.size()) bytes.clear();
    }
    return bytes;
}

// Whether the process died while it appended the staged record: then its file ends in the first bytes of it.
void FindTornPart(const Quern::BlockJournalLayout& journal, const fs::path& folder, LeftOver& leftOver) {
    const std::string name(journal.fileName, strnlen(journal.fileName, sizeof journal.fileName));
    if (journal.fileOffset < 0 || name.empty() || name.find('/') != std::string::npos) return;
    const std::string path = (folder / name).string();
    std::string ignored;
    const std::unique_ptr<ByteSource> file = OpenSource(path, ignored);
    if (!file) return;
    std::vector<uint8_t> part(leftOver.staged.size());
    const uint64_t begin = static_cast<uint64_t>(journal.fileOffset);
    part.resize(file->ReadAt(begin, part.data(), part.size(), part.size()));
    if (part.empty() || !std::equal(part.begin(), part.end(), leftOver.staged.begin())) return;
    leftOver.tornFile = path;
    leftOver.tornAt = begin;
}

}  // namespace

LeftOver ReadLeftOver(const std::string& path, ByteSource& block) {
    LeftOver leftOver;
    leftOver.block = SnapshotBlock(block);
    const fs::path blockPath(path);
    if (blockPath.extension() != kBlockExtension) return leftOver;
    std::vector<uint8_t> bytes = ReadJournal(fs::path(blockPath).replace_extension(kJournalExtension));
    if (bytes.empty()) return leftOver;

    Quern::BlockJournal journal(bytes.data());
    journal.Reconcile(leftOver.block.data(), leftOver.block.size());
    const fs::path folder = blockPath.parent_path() / kLogFolder / blockPath.stem();
    size_t length;
    const uint8_t* staged = journal.Staged(length);
    if (!staged || journal.IsStagedInFile(folder.string())) return leftOver;
    leftOver.staged.assign(staged, staged + length);
    FindTornPart(*reinterpret_cast<const Quern::BlockJournalLayout*>(bytes.data()), folder, leftOver);
    return leftOver;
}

void WalkLeftOver(const LeftOver& leftOver, KeyRing& keys, ReadEvents& events) {
    if (!leftOver.staged.empty()) {
        MemorySource staged(leftOver.staged);
        RecordWalk(staged, keys, events).Advance(false);
    }
    WalkBlock(leftOver.block, keys, events);
}

}  // namespace OrvaneLog
