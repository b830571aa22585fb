#include "Base/Container/AObject.h"

namespace Quern {

bool AObject::IsEqual(const AObject* other) const {
    return this == other;
}

}  // namespace Quern
