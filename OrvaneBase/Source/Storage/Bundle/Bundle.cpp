#include "Storage/Bundle/Bundle.h"

namespace Quern {

AString Bundle::GetMetaString(const char*, const char*, const char* defaultValue) {
    return defaultValue;
}

}  // namespace Quern
