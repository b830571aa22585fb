// Waiting calls, oldest first.
#ifndef ORVANE_SYSTEM_THREAD_SELECTOR_LIST_H
#define ORVANE_SYSTEM_THREAD_SELECTOR_LIST_H

#include <cstddef>
#include <vector>

#include "System/Thread/FunctionSelector.h"

namespace Quern {

// A vector whose head moves, so that neither end shifts the rest and a short queue allocates nothing. Has no lock.
class SelectorList {
public:
    void Push(const CAFunctionSelector& selector) {
        if (_head > _entries.size() / 2 && _entries.size() == _entries.capacity()) DropTaken();
        _entries.push_back(selector);
    }
    // Takes the oldest. False, and `selector` untouched, if there is none.
    bool Pop(CAFunctionSelector& selector) {
        if (_head == _entries.size()) return false;
        selector = _entries[_head++];
        if (_head == _entries.size()) Clear();
        return true;
    }
    // Keeps the order of the rest.
    void RemoveTarget(const void* target) {
        DropTaken();
        std::erase_if(_entries, [target](const CAFunctionSelector& selector) { return selector.target == target; });
    }
    void Clear() {
        constexpr size_t kKeptCapacity = 1024;  // what a burst took beyond this is given back
        _entries.clear();
        if (_entries.capacity() > kKeptCapacity) _entries.shrink_to_fit();
        _head = 0;
    }

private:
    void DropTaken() {
        _entries.erase(_entries.begin(), _entries.begin() + static_cast<std::ptrdiff_t>(_head));
        _head = 0;
    }

    std::vector<CAFunctionSelector> _entries;
    size_t _head = 0;  // those before it have been taken
};

}  // namespace Quern

#endif
