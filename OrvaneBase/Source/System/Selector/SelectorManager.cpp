#include "System/Selector/SelectorManager.h"

namespace Quern {

bool CSelectorManager::Queue::Pop(CAFunctionSelector& selector) {
    const CCritical guard(&mutex);
    if (selectors.empty()) return false;
    selector = selectors.front();
    selectors.pop_front();
    return true;
}

CSelectorManager::~CSelectorManager() {
    const CCritical guard(&_queue->mutex);
    _queue->selectors.clear();
}

void CSelectorManager::AddSelector(const CAFunctionSelector& selector) {
    const CCritical guard(&_queue->mutex);
    _queue->selectors.push_back(selector);
}

bool CSelectorManager::Pop1stSelector(CAFunctionSelector& selector) {
    return _queue->Pop(selector);
}

void CSelectorManager::Update() {
    const std::shared_ptr<Queue> queue = _queue;
    CAFunctionSelector selector;
    for (int done = 0; done < kSelectorsPerUpdate && queue->Pop(selector); ++done)
        selector.Perform();
}

void CSelectorManager::IgnoreTarget(void* target) {
    const CCritical guard(&_queue->mutex);
    std::erase_if(_queue->selectors,
                  [target](const CAFunctionSelector& selector) { return selector.target == target; });
}

}  // namespace Quern
