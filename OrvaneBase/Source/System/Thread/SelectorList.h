// Waiting calls, oldest first.
#ifndef ORVANE_SYSTEM_THREAD_SELECTOR_LIST_H
#define ORVANE_SYSTEM_THREAD_SELECTOR_LIST_H

#include <array>
#include <cstddef>
#include <memory>
#include <utility>

#include "System/Thread/FunctionSelector.h"

namespace Quern {

// A chain of blocks: neither end shifts the rest, a burst moves nothing that is there already, and a short queue
// allocates once. Has no lock: its owner sees to that. Owns no target of a call.
class SelectorList {
public:
    SelectorList() = default;
    ~SelectorList() { Clear(); }
    SelectorList(const SelectorList&) = delete;
    SelectorList& operator=(const SelectorList&) = delete;

    // Adds a copy at the end.
    void Push(const CAFunctionSelector& selector) {
        if (!_last || _last->end == kBlockSize) Append();
        _last->entries[_last->end++] = selector;
    }
    // Takes the oldest. False, and `selector` untouched, if there is none.
    bool Pop(CAFunctionSelector& selector) {
        if (!_first || _first->begin == _first->end) return false;
        selector = _first->entries[_first->begin++];
        if (_first->begin == _first->end) DropFirst();
        return true;
    }
    // Drops every call to that target, and keeps the order of the rest. The pointer is compared, not looked into.
    void RemoveTarget(const void* target) {
        SelectorList kept;
        for (CAFunctionSelector selector; Pop(selector);)
            if (selector.target != target) kept.Push(selector);
        Swap(kept);
    }
    // Drops all calls, without performing them.
    void Clear() {
        while (_first && _first->next)
            DropFirst();
        if (_first) DropFirst();
    }
    void Swap(SelectorList& other) {
        std::swap(_first, other._first);
        std::swap(_last, other._last);
    }

private:
    static constexpr size_t kBlockSize = 31;  // calls

    // Those between begin and end wait.
    struct Block {
        size_t begin = 0;  // those before it have been taken
        size_t end = 0;    // behind the last that was added
        std::unique_ptr<Block> next;
        std::array<CAFunctionSelector, kBlockSize> entries;
    };

    // Puts an empty block at the end.
    void Append() {
        auto block = std::unique_ptr<Block>(new Block);
        Block* const last = block.get();
        (_last ? _last->next : _first) = std::move(block);
        _last = last;
    }
    // The last block stays, emptied, for what comes next.
    void DropFirst() {
        if (_first.get() == _last)
            _first->begin = _first->end = 0;
        else
            _first = std::move(_first->next);
    }

    std::unique_ptr<Block> _first;
    Block* _last = nullptr;  // in the chain; null if there is no block yet
};

}  // namespace Quern

#endif
