#include "System/Operation/StaticOperation.h"

namespace Quern {

StaticOperation::StaticOperation(Function function, void* data, bool repeat) : _function(function), _data(data) {
    SetRepeat(repeat);
}

void StaticOperation::Run() {
    if (_function) _function(this, _data);
}

Operation* StaticOperation::Duplicate() const {
    return new StaticOperation(*this);
}

}  // namespace Quern
