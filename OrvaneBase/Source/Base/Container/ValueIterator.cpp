#include "Base/Container/ValueIterator.h"

#include "Base/Assert.h"
#include "Base/Container/ValueIteratorImpl.h"

namespace Quern {

// The old one goes last: in the assignments below the new one is copied from it when an iterator is assigned to itself.
void ValueWrapper::SetImpl(ValueIteratorBaseImpl* impl) {
    ValueIteratorBaseImpl* old = _impl;
    _impl = impl;
    delete old;
}

bool ValueIteratorBase::operator==(const ValueIteratorBase& other) const {
    return _impl && other._impl ? _impl->IsSamePlace(*other._impl) : !_impl && !other._impl;
}

bool ValueIteratorBase::operator!=(const ValueIteratorBase& other) const {
    return !operator==(other);
}

int ValueIteratorBase::operator-(const ValueIteratorBase& other) const {
    ORVANE_ASSERT_TEXT(_impl && other._impl, "0");
    return _impl->computeDistance(*other._impl);
}

ValueIteratorBase& ValueIteratorBase::operator--() {
    ORVANE_ASSERT_TEXT(false, "0");
    return *this;
}

ValueIteratorBase& ValueIteratorBase::operator++() {
    ORVANE_ASSERT_TEXT(false, "0");
    return *this;
}

const Value& ValueIteratorBase::operator*() const {
    ORVANE_ASSERT_TEXT(false, "0");
    return Value::Null;
}

Value ValueIteratorBase::key() const {
    return _impl ? _impl->key() : Value::Null;
}

int ValueIteratorBase::index() const {
    return _impl ? _impl->index() : 0;
}

const char* ValueIteratorBase::memberName() const {
    return _impl ? _impl->memberName() : "";
}

ValueConstIterator::ValueConstIterator(ValueConstIteratorImpl* impl) {
    SetImpl(impl);
}

ValueConstIterator::ValueConstIterator(const ValueConstIterator& other) : ValueIteratorBase() {
    *this = other;
}

ValueConstIterator& ValueConstIterator::operator=(const ValueConstIterator& other) {
    const ValueIteratorBaseImpl* impl = ImplOf(other);
    SetImpl(impl ? new ValueConstIteratorImpl(*impl) : nullptr);
    return *this;
}

ValueConstIterator::~ValueConstIterator() {
    SetImpl(nullptr);
}

ValueConstIterator& ValueConstIterator::operator--() {
    if (_impl) --*_impl;
    return *this;
}

ValueConstIterator& ValueConstIterator::operator++() {
    if (_impl) ++*_impl;
    return *this;
}

const Value& ValueConstIterator::operator*() const {
    return _impl ? **_impl : Value::Null;
}

ValueConstIterator* ValueConstIterator::duplicate() const {
    return new ValueConstIterator(*this);
}

ValueConstIterator ValueConstIterator::operator++(int) {
    ValueConstIterator before(*this);
    ++*this;
    return before;
}

ValueConstIterator ValueConstIterator::operator--(int) {
    ValueConstIterator before(*this);
    --*this;
    return before;
}

ValueIterator::ValueIterator(ValueIteratorImpl* impl) {
    SetImpl(impl);
}

ValueIterator::ValueIterator(const ValueIterator& other) : ValueIteratorBase() {
    *this = other;
}

ValueIterator& ValueIterator::operator=(const ValueIterator& other) {
    return *this = static_cast<const ValueIteratorBase&>(other);
}

ValueIterator::~ValueIterator() {
    SetImpl(nullptr);
}

ValueIterator& ValueIterator::operator=(const ValueIteratorBase& other) {
    const ValueIteratorBaseImpl* impl = ImplOf(other);
    SetImpl(impl ? new ValueIteratorImpl(*impl) : nullptr);
    return *this;
}

ValueIterator ValueIterator::operator++(int) {
    ValueIterator before(*this);
    ++*this;
    return before;
}

ValueIterator ValueIterator::operator--(int) {
    ValueIterator before(*this);
    --*this;
    return before;
}

ValueIterator& ValueIterator::operator--() {
    if (_impl) --*_impl;
    return *this;
}

ValueIterator& ValueIterator::operator++() {
    if (_impl) ++*_impl;
    return *this;
}

Value& ValueIterator::operator*() const {
    return const_cast<Value&>(_impl ? **_impl : Value::Null);
}

ValueIterator* ValueIterator::duplicate() const {
    return new ValueIterator(*this);
}

}  // namespace Quern
