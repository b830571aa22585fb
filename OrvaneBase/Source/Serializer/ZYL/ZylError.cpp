#include "Serializer/ZYL/ZylError.h"

#include <iterator>

namespace Quern {
namespace {

// A text stands at the index of its negated code.
constexpr const char* kTexts[] = {
#define ORVANE_ZYL_ERROR_TEXT(code, name, text) text,
    ORVANE_ZYL_ERRORS(ORVANE_ZYL_ERROR_TEXT)
#undef ORVANE_ZYL_ERROR_TEXT
};
constexpr int kLowestCode = ZylError::ZYL_NULL_ARRAY;
static_assert(std::size(kTexts) == 1 - kLowestCode, "the codes have a gap");

}  // namespace

const char* ZylError::getErrorString(ErrorType code) {
    const int value = code;
    if (value > 0) return kTexts[0];
    if (value < kLowestCode) return "unknown error";
    return kTexts[-value];
}

}  // namespace Quern
