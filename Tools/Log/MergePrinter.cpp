#include "Log/MergePrinter.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "Log/ByteSource.h"

namespace OrvaneLog {
namespace {

constexpr size_t kMostPending = 1u << 20;

}  // namespace

MergePrinter::MergePrinter(Printer& next) : _next(next), _file(OpenUnnamedFile()) {
    if (_file < 0) _error = errno;
}

MergePrinter::~MergePrinter() {
    if (_file >= 0) close(_file);
}

void MergePrinter::BeginSource() {
    _untimed = 0;
    _last = 0;
}

void MergePrinter::Print(const Entry& entry) {
    if (_error != 0) return;
    const bool isTimed = entry.kind == EntryKind::kLine;
    if (isTimed) _last = entry.line.stamp;
    if (isTimed && _untimed > 0)
        for (auto at = _kept.end() - static_cast<std::ptrdiff_t>(_untimed); at != _kept.end(); ++at)
            at->stamp = _last;
    _untimed = _last != 0 ? 0 : _untimed + 1;
    _kept.push_back({_last, _written + _pending.size(), entry.whole.size()});
    _pending += entry.whole;
    if (_pending.size() > kMostPending) Spool();
}

bool MergePrinter::Release() {
    if (_error == 0) Spool();
    std::stable_sort(_kept.begin(), _kept.end(), [](const Kept& a, const Kept& b) { return a.stamp < b.stamp; });
    std::string whole;
    for (const Kept& entry : _kept) {
        if (entry.offset + entry.size > _written) continue;  // the file could not hold it
        whole.resize(entry.size);
        if (ReadFully(_file, entry.offset, reinterpret_cast<uint8_t*>(whole.data()), entry.size, entry.size, _error) ==
            entry.size)
            _next.Print(MakeEntry(whole));
    }
    _kept.clear();
    errno = _error;
    return _error == 0;
}

void MergePrinter::Spool() {
    if (WriteFully(_file, reinterpret_cast<const uint8_t*>(_pending.data()), _pending.size()))
        _written += _pending.size();
    else
        _error = errno;
    _pending.clear();
}

}  // namespace OrvaneLog
