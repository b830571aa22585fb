#include "Log/LeftOver.h"

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

}  // namespace

LeftOver ReadLeftOver(const std::string& path, ByteSource& block) {
    LeftOver leftOver;
    const bool isJournalAlone = IsJournal(path);
    if (!isJournalAlone) leftOver.block = SnapshotBlock(block);
    const fs::path blockPath = fs::path(path).replace_extension(kBlockExtension);
    if (!isJournalAlone && blockPath != path) return leftOver;
    std::vector<uint8_t> bytes = ReadJournal(fs::path(blockPath).replace_extension(kJournalExtension));
    if (bytes.empty()) return leftOver;

    Quern::BlockJournal journal(bytes.data());
    journal.Reconcile(leftOver.block.data(), leftOver.block.size());
    const fs::path folder = blockPath.parent_path() / kLogFolder / blockPath.stem();
    size_t length;
    const uint8_t* staged = journal.Staged(length);
    if (!staged) return leftOver;
    const Quern::BlockJournal::StagedPlace place = journal.FindStaged(folder.string());
    if (place.inFile == Quern::BlockJournal::InFile::kWhole) return leftOver;
    leftOver.staged.assign(staged, staged + length);
    if (place.inFile == Quern::BlockJournal::InFile::kPart) {
        leftOver.tornFile = place.path;
        leftOver.tornFrom = place.offset;
    }
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
