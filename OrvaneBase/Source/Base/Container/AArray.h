// A sequence of objects.
#ifndef ORVANE_BASE_CONTAINER_A_ARRAY_H
#define ORVANE_BASE_CONTAINER_A_ARRAY_H

#include <vector>

#include "Base/Container/ANumber.h"
#include "Base/Container/AString.h"

namespace Quern {

// Holds no null: every way of adding skips one. Copies are deep and own their entries. Two arrays are equal only if
// they are the same object. What is handed out stays the array's.
class AArray : public AObject {
public:
    AArray() : AObject(kTypeArray) {}
    explicit AArray(const AArray* other);
    AArray(const AArray& other);
    AArray& operator=(const AArray& other);
    ~AArray() override;

    // Stores the object itself, and sets whether this array deletes it. An object that is not owned must outlive its
    // place in the array.
    void Add(const AObject* object, bool owned);
    // These store owned copies.
    void Add(const AObject& object);
    void Add(const ANumber& number);
    void Add(const char* text);
    // Adds a copy of each entry of the other array, which may be this one.
    void Add(const AArray* other);

    // Out of range, a negative index too, removes nothing. An owned object is deleted.
    void RemoveObjectAtIndex(int index);
    void RemoveFirstObject() { RemoveObjectAtIndex(0); }
    void RemoveLastObject() { RemoveObjectAtIndex(Count() - 1); }
    void RemoveAll();

    // Null out of range.
    AObject* ObjectAtIndex(int index) const;
    AObject* operator[](int index) const { return ObjectAtIndex(index); }
    AObject* FirstObject() const { return ObjectAtIndex(0); }
    AObject* LastObject() const { return ObjectAtIndex(Count() - 1); }

    // The same for entries that the caller knows to be AStrings: the type is not checked.
    AString* AStringAtIndex(int index) const { return static_cast<AString*>(ObjectAtIndex(index)); }
    AString* FirstAString() const { return AStringAtIndex(0); }
    AString* LastAString() const { return AStringAtIndex(Count() - 1); }
    const char* CStringAtIndex(int index) const;
    const char* FirstCString() const { return CStringAtIndex(0); }
    const char* LastCString() const { return CStringAtIndex(Count() - 1); }

    int Count() const { return static_cast<int>(_objects.size()); }

    AArray* Clone() const override;

private:
    std::vector<AObject*> _objects;
};

}  // namespace Quern

#endif
