#include "Base/Configure/StringIterator.h"

namespace Orvane {

void StringIterator::Push(const char* text) {
    if (text) _texts.emplace_back(text);
}

const char* StringIterator::Next() {
    return IsEnd() ? nullptr : _texts[static_cast<size_t>(_index++)].c_str();
}

bool StringIterator::IsEnd() {
    return static_cast<size_t>(_index) >= _texts.size();
}

}  // namespace Orvane
