// The walk over the names of a module's keys that observers of the configuration are handed.
#ifndef ORVANE_BASE_CONFIGURE_STRING_ITERATOR_H
#define ORVANE_BASE_CONFIGURE_STRING_ITERATOR_H

#include <cstdint>
#include <string>
#include <vector>

#include "Orvane/IRemoteConfig.h"

namespace Orvane {

// Filled first and then walked, once: a Push moves the texts that Next gave. On one thread at a time.
class StringIterator final : public IStringIterator {
public:
    // Appends a copy; null is ignored.
    void Push(const char* text);

    // Null at the end, and again at each further call.
    const char* Next() override;
    // True without texts.
    bool IsEnd() override;

private:
    std::vector<std::string> _texts;
    int32_t _index = 0;
};

}  // namespace Orvane

#endif
