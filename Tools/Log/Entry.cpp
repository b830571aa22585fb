#include "Log/Entry.h"

namespace OrvaneLog {
namespace {

// The synchronous file gets a line and its newline in this many bytes, without room for the newline of the longest.
constexpr size_t kLongestTextFileLine = 4095;

bool BeginsEntry(std::string_view text) {
    return BeginsLine(text) || BeginsLossNotice(text);
}

}  // namespace

Entry MakeEntry(std::string_view whole) {
    Entry entry;
    entry.whole = whole;
    if (ParseLine(whole, entry.line))
        entry.kind = EntryKind::kLine;
    else if (BeginsLossNotice(whole))
        entry.kind = EntryKind::kLossNotice;
    return entry;
}

void EntrySplitter::Feed(std::string_view piece) {
    // Long texts go in parts, so that what is pending never grows with them.
    while (!piece.empty()) {
        const std::string_view part = piece.substr(0, kLongestEntry);
        piece.remove_prefix(part.size());
        _pending += part;
        Scan(false);
    }
}

void EntrySplitter::End() {
    Scan(true);
}

void EntrySplitter::Scan(bool atEnd) {
    const std::string_view all = _pending;
    size_t begin = 0;
    for (;;) {
        const size_t newline = all.find('\n', _scanned);
        if (newline == std::string_view::npos) break;
        const std::string_view next = all.substr(newline + 1);
        // Only a line of the format takes further lines to itself.
        const bool takesMore = BeginsLine(all.substr(begin));
        if (takesMore && next.size() < kLineStartLength && !atEnd) {
            _scanned = newline;  // cannot tell yet what begins there
            break;
        }
        if (!takesMore || BeginsEntry(next)) {
            Give(all.substr(begin, newline - begin));
            begin = newline + 1;
        }
        _scanned = newline + 1;
    }
    if (all.size() - begin > kLongestEntry || (atEnd && begin < all.size())) {
        std::string_view rest = all.substr(begin);
        if (rest.ends_with('\n')) rest.remove_suffix(1);
        Give(rest);
        begin = all.size();
    }
    _pending.erase(0, begin);
    _scanned = _scanned > begin ? _scanned - begin : 0;
}

void EntrySplitter::Give(std::string_view text) {
    while (_splitGlued && text.size() > kLongestTextFileLine && BeginsLine(text.substr(kLongestTextFileLine))) {
        _take(MakeEntry(text.substr(0, kLongestTextFileLine)));
        text.remove_prefix(kLongestTextFileLine);
    }
    _take(MakeEntry(text));
}

}  // namespace OrvaneLog
