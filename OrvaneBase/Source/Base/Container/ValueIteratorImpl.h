// The places that the iterators of a Value point at. Each belongs to the one iterator that wraps it.
#ifndef ORVANE_BASE_CONTAINER_VALUE_ITERATOR_IMPL_H
#define ORVANE_BASE_CONTAINER_VALUE_ITERATOR_IMPL_H

#include "Base/Container/Value.h"

namespace Quern {

// A place in a map, or nowhere ("null"): there the steps do nothing and the element is Value::Null.
class ValueIteratorBaseImpl : public ValueIteratorBase {
public:
    ValueIteratorBaseImpl(const ValueIteratorBaseImpl&) = delete;
    ValueIteratorBaseImpl& operator=(const ValueIteratorBaseImpl&) = delete;

    ValueIteratorBaseImpl& operator--() override;
    ValueIteratorBaseImpl& operator++() override;
    // Behind the last entry there is no element: there it must not be asked for, nor key, index or name.
    const Value& operator*() const override;
    Value key() const override;
    int index() const override;
    const char* memberName() const override;

    // Two that are nowhere are at the same place.
    bool IsSamePlace(const ValueIteratorBaseImpl& other) const;
    // The steps to the other, found by walking: from here to it, or if it does not lie ahead, from it to here, and then
    // negative. 0 between two maps.
    int computeDistance(const ValueIteratorBaseImpl& other) const;

protected:
    ValueIteratorBaseImpl(ValueMap& map, ValueMap::iterator place);
    // Goes where the other is.
    explicit ValueIteratorBaseImpl(const ValueIteratorBaseImpl* other);

    ValueMap* _map = nullptr;  // bounds the walk of computeDistance
    ValueMap::iterator _place{};
    bool _isNull = true;
};

class ValueConstIteratorImpl final : public ValueIteratorBaseImpl {
public:
    ValueConstIteratorImpl(ValueMap& map, ValueMap::iterator place) : ValueIteratorBaseImpl(map, place) {}
    explicit ValueConstIteratorImpl(const ValueIteratorBaseImpl& other) : ValueIteratorBaseImpl(&other) {}
};

class ValueIteratorImpl final : public ValueIteratorBaseImpl {
public:
    ValueIteratorImpl(ValueMap& map, ValueMap::iterator place) : ValueIteratorBaseImpl(map, place) {}
    explicit ValueIteratorImpl(const ValueIteratorBaseImpl& other) : ValueIteratorBaseImpl(&other) {}

    Value& operator*() const override;
};

}  // namespace Quern

#endif
