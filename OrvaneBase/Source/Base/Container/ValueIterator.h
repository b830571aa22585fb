// Walks over the entries of a Value, in order of their keys.
//
// An iterator points at an implementation object of its own, or at none: the iterators of a value that is no container
// have none and are all equal, so that a walk over a number takes no step. It is valid until its entry is removed.
#ifndef ORVANE_BASE_CONTAINER_VALUE_ITERATOR_H
#define ORVANE_BASE_CONTAINER_VALUE_ITERATOR_H

namespace Quern {

class Value;
class ValueIteratorBaseImpl;
class ValueConstIteratorImpl;
class ValueIteratorImpl;

// Holds what answers for an iterator: its own implementation object or null; for an implementation, itself.
class ValueWrapper {
protected:
    // Takes over another implementation and deletes the old one. For iterators that own theirs.
    void SetImpl(ValueIteratorBaseImpl* impl);

    ValueIteratorBaseImpl* _impl = nullptr;
};

// What all iterators share. Slot order is a contract.
class ValueIteratorBase : protected ValueWrapper {
public:
    virtual ~ValueIteratorBase() = default;
    virtual bool operator==(const ValueIteratorBase& other) const;
    virtual bool operator!=(const ValueIteratorBase& other) const;
    // The steps from this one to the other: negative if the other comes first, 0 between different values.
    // REQUIRES: both have an implementation.
    virtual int operator-(const ValueIteratorBase& other) const;
    // The steps and the element belong to the derived classes; here they end the process.
    virtual ValueIteratorBase& operator--();
    virtual ValueIteratorBase& operator++();
    virtual const Value& operator*() const;
    // The index, or the name as Value makes it from a text: a number if it looks like one.
    virtual Value key() const;
    // -1 for a name; 0 without an implementation.
    virtual int index() const;
    // Empty for an index and without an implementation. Valid as long as the entry.
    virtual const char* memberName() const;

protected:
    ValueIteratorBase() = default;
    // What an iterator points at is its own, and copied by the derived classes.
    ValueIteratorBase(const ValueIteratorBase&) : ValueWrapper() {}
    ValueIteratorBase& operator=(const ValueIteratorBase&) { return *this; }

    // The implementation behind any iterator, or null.
    static const ValueIteratorBaseImpl* ImplOf(const ValueIteratorBase& iterator) { return iterator._impl; }
};

// Over a constant value. Without an implementation the steps do nothing and the element is Value::Null.
class ValueConstIterator : public ValueIteratorBase {
public:
    ValueConstIterator() = default;
    // Takes over the implementation, which may be null.
    explicit ValueConstIterator(ValueConstIteratorImpl* impl);
    ValueConstIterator(const ValueConstIterator& other);
    ValueConstIterator& operator=(const ValueConstIterator& other);
    ~ValueConstIterator() override;

    ValueConstIterator& operator--() override;
    ValueConstIterator& operator++() override;
    const Value& operator*() const override;
    // A new iterator at the same place, which the caller deletes.
    virtual ValueConstIterator* duplicate() const;
    virtual ValueConstIterator operator++(int);
    virtual ValueConstIterator operator--(int);
};

// Over a value whose elements may be written. Without an implementation the steps do nothing and the element is
// Value::Null, which must not be written.
class ValueIterator : public virtual ValueIteratorBase {
public:
    ValueIterator() = default;
    // Takes over the implementation, which may be null.
    explicit ValueIterator(ValueIteratorImpl* impl);
    ValueIterator(const ValueIterator& other);
    ValueIterator& operator=(const ValueIterator& other);
    ~ValueIterator() override;

    // Goes to the place of any other iterator.
    virtual ValueIterator& operator=(const ValueIteratorBase& other);
    virtual ValueIterator operator++(int);
    virtual ValueIterator operator--(int);
    ValueIterator& operator--() override;
    ValueIterator& operator++() override;
    Value& operator*() const override;
    // A new iterator at the same place, which the caller deletes.
    virtual ValueIterator* duplicate() const;
};

}  // namespace Quern

#endif
