#include "Log/ModuleFollower.h"

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <utility>

#include "Log/BlockWalk.h"
#include "Log/LogFileName.h"

namespace OrvaneLog {
namespace {

namespace fs = std::filesystem;

// Hands on the text behind what was shown already.
class TextRemainder {
public:
    void Skip(uint64_t count) { _left = count; }
    std::string_view Of(std::string_view piece) {
        const size_t skipped = static_cast<size_t>(std::min<uint64_t>(_left, piece.size()));
        _left -= skipped;
        return piece.substr(skipped);
    }

private:
    uint64_t _left = 0;
};

// Only asks what a block would give.
class BlockProbe : public ReadEvents {
public:
    void OnText(std::string_view) override {}
    void OnRecordEnd(const RecordReport& record) override { report = record; }
    void OnSkipped(uint64_t, uint64_t, const std::string&) override {}

    std::optional<RecordReport> report;
};

class BlockEvents : public ReadEvents {
public:
    BlockEvents(TextEvents& text, uint64_t shown) : _text(text) { _remainder.Skip(shown); }

    void OnText(std::string_view piece) override { _text.OnText(_remainder.Of(piece)); }
    void OnRecordEnd(const RecordReport&) override { _text.End(); }
    void OnSkipped(uint64_t, uint64_t, const std::string&) override {}

private:
    TextEvents& _text;
    TextRemainder _remainder;
};

std::optional<BlockIdentity> IdentityOf(std::span<const uint8_t> block) {
    if (block.size() < kSmallestRecord || !LogRecord::IsMagic(block[0])) return std::nullopt;
    const RecordHeader header = RecordHeader::Parse(block.data());
    const auto payload = block.subspan(LogRecord::kHeaderLength);
    return BlockIdentity::Of(header, payload.first(std::min<size_t>(payload.size(), header.length)));
}

}  // namespace

// What comes from the module's files: without what its block has shown, and with its faults reported.
class ModuleFollower::FileEvents : public ReadEvents {
public:
    FileEvents(ModuleFollower& owner, TextEvents& text) : _owner(owner), _text(text) {}

    void OnRecord(const RecordHeader& header, std::span<const uint8_t> payloadHead) override {
        _remainder.Skip(_owner._blocks.TakeRecord(BlockIdentity::Of(header, payloadHead)));
    }
    void OnText(std::string_view piece) override {
        _text.OnText(_remainder.Of(piece));
        _moved = true;
    }
    void OnRecordEnd(const RecordReport& record) override {
        _text.OnRecordEnd(record);
        if (record.verdict == Verdict::kEncrypted) _owner.TellOfKey(_owner._path);
        _owner._report.Record(_owner._path, record);
    }
    void OnSkipped(uint64_t offset, uint64_t size, const std::string& why) override {
        _text.OnSkipped(offset, size, why);
        _owner._report.Skipped(_owner._path, offset, size, why);
    }

    // Whether there was text since the last call.
    bool HasMoved() { return std::exchange(_moved, false); }

private:
    ModuleFollower& _owner;
    TextEvents& _text;
    TextRemainder _remainder;
    bool _moved = false;
};

ModuleFollower::ModuleFollower(std::string folder, std::string module, std::string first, std::string block,
                               KeyRing& keys, Report& report, Printer& printer, const FilterOptions& filter)
    : _folder(std::move(folder)),
      _module(std::move(module)),
      _first(std::move(first)),
      _blockPath(std::move(block)),
      _keys(keys),
      _report(report),
      _printer(printer),
      _filter(filter),
      _blockText(printer, filter, _module, false) {}

ModuleFollower::~ModuleFollower() = default;

void ModuleFollower::Poll() {
    // The block first: if it is flushed while the file is read it is found there, and what was seen of it is dropped.
    const std::vector<uint8_t> block = TakeBlock();
    _blocks.See(IdentityOf(block), BlockMemory::Clock::now());
    FollowFiles();
    ShowBlock(block);
}

void ModuleFollower::FollowFiles() {
    std::vector<std::string> later = LaterFiles();
    if (_path.empty()) {
        if (later.empty() && _first.empty()) return;
        Open(_first.empty() ? later.back() : _first);
        later = LaterFiles();
    } else if (WasReplaced()) {
        Finish();
        Open(_path);
    }
    if (_walk) _walk->Advance(true);
    if (_events && !_events->HasMoved()) _text->Pause();

    // The writer may still be closing the old file when the new one appears: it is left a poll later.
    if (!std::exchange(_sawLater, !later.empty()) || later.empty()) return;
    for (const std::string& path : later) {
        Finish();
        Open(path);
        if (_walk) _walk->Advance(true);
    }
    _sawLater = false;
}

std::vector<std::string> ModuleFollower::LaterFiles() const {
    const auto key = [](const std::string& path) { return std::pair(ParseLogFileName(path).hour, path); };
    std::vector<std::string> files;
    std::error_code error;
    for (fs::directory_iterator entry(_folder, error), end; !error && entry != end; entry.increment(error)) {
        const std::string path = entry->path().string();
        if (!IsLogFile(path)) continue;
        const LogFileName name = ParseLogFileName(path);
        if (name.module != _module || name.hour.empty()) continue;
        if (_path.empty() ? _first.empty() || key(path) > key(_first) : key(path) > key(_path)) files.push_back(path);
    }
    std::sort(files.begin(), files.end(), [&key](const auto& a, const auto& b) { return key(a) < key(b); });
    return files;
}

void ModuleFollower::Open(const std::string& path) {
    _walk.reset();
    _path = path;
    std::string error;
    _source = OpenSource(path, error);
    if (!_source) {
        _report.Problem(path + ": " + error);
        return;
    }
    struct stat facts;
    _inode = stat(path.c_str(), &facts) == 0 ? facts.st_ino : 0;
    _size = 0;
    const SourceKind kind = KindOf(path, *_source);
    _events.reset();
    _text = std::make_unique<TextEvents>(_printer, _filter, _module, kind == SourceKind::kText);
    _events = std::make_unique<FileEvents>(*this, *_text);
    _walk = MakeWalk(kind, *_source, _keys, *_events);
}

void ModuleFollower::Finish() {
    if (!_walk) return;
    _walk->Advance(false);
    _text->End();
}

bool ModuleFollower::WasReplaced() {
    struct stat facts;
    if (stat(_path.c_str(), &facts) != 0) return false;  // removed; what is open is read on
    const bool replaced = facts.st_ino != _inode || static_cast<uint64_t>(facts.st_size) < _size;
    _size = static_cast<uint64_t>(facts.st_size);
    return replaced;
}

std::vector<uint8_t> ModuleFollower::TakeBlock() {
    std::string ignored;
    std::error_code error;
    if (_blockPath.empty() || !fs::is_regular_file(_blockPath, error)) return {};
    const std::unique_ptr<ByteSource> source = OpenSource(_blockPath, ignored);
    return source ? SnapshotBlock(*source) : std::vector<uint8_t>();
}

void ModuleFollower::ShowBlock(const std::vector<uint8_t>& block) {
    if (_blocks.HasArrived() || block == _shownBlock || _blocks.IsWaiting(BlockMemory::Clock::now())) return;
    BlockProbe probe;
    WalkBlock(block, _keys, probe);
    const bool isSettled = std::exchange(_seenBlock, block) == block;
    if (!probe.report) return;
    if (probe.report->verdict == Verdict::kEncrypted) TellOfKey(_blockPath);
    // Caught in the middle of a write it may look damaged; next time it is looked at again.
    if (probe.report->verdict == Verdict::kDamaged && !isSettled) return;
    BlockEvents events(_blockText, _blocks.Shown());
    WalkBlock(block, _keys, events);
    _blocks.SetShown(probe.report->textSize);
    _shownBlock = block;
}

void ModuleFollower::TellOfKey(const std::string& path) {
    if (!std::exchange(_toldOfKey, true)) _report.Note(path + ": holds encrypted records that no key at hand opens");
}

}  // namespace OrvaneLog
