#include "Base/Container/ValueIteratorImpl.h"

namespace Quern {
namespace {

// The steps from one place forward to another, or -1 if it does not lie ahead.
int StepsForward(const ValueMap& map, ValueMap::const_iterator from, ValueMap::const_iterator to) {
    int steps = 0;
    for (; from != to; ++from, ++steps) {
        if (from == map.end()) return -1;
    }
    return steps;
}

}  // namespace

ValueIteratorBaseImpl::ValueIteratorBaseImpl(ValueMap& map, ValueMap::iterator place)
    : _map(&map), _place(place), _isNull(false) {
    _impl = this;
}

ValueIteratorBaseImpl::ValueIteratorBaseImpl(const ValueIteratorBaseImpl* other)
    : _map(other->_map), _place(other->_place), _isNull(other->_isNull) {
    _impl = this;
}

ValueIteratorBaseImpl& ValueIteratorBaseImpl::operator--() {
    if (!_isNull) --_place;
    return *this;
}

ValueIteratorBaseImpl& ValueIteratorBaseImpl::operator++() {
    if (!_isNull) ++_place;
    return *this;
}

const Value& ValueIteratorBaseImpl::operator*() const {
    return _isNull ? Value::Null : _place->second;
}

Value ValueIteratorBaseImpl::key() const {
    if (_isNull) return Value::Null;
    const ValueString& key = _place->first;
    return key.c_str() ? Value(key.c_str()) : Value(key.index());
}

int ValueIteratorBaseImpl::index() const {
    if (_isNull) return 0;
    return _place->first.c_str() ? -1 : _place->first.index();
}

const char* ValueIteratorBaseImpl::memberName() const {
    const char* name = _isNull ? nullptr : _place->first.c_str();
    return name ? name : "";
}

bool ValueIteratorBaseImpl::IsSamePlace(const ValueIteratorBaseImpl& other) const {
    return _isNull ? other._isNull : _place == other._place;
}

int ValueIteratorBaseImpl::computeDistance(const ValueIteratorBaseImpl& other) const {
    if (_isNull || other._isNull || _map != other._map) return 0;
    const int forward = StepsForward(*_map, _place, other._place);
    return forward >= 0 ? forward : -StepsForward(*_map, other._place, _place);
}

Value& ValueIteratorImpl::operator*() const {
    return const_cast<Value&>(ValueIteratorBaseImpl::operator*());  // this kind is made for values that may be written
}

}  // namespace Quern
