#include "Base/Container/AArray.h"

#include <utility>

namespace Quern {

AArray::AArray(const AArray* other) : AArray() {
    Add(other);
}

AArray::AArray(const AArray& other) : AObject(other) {
    Add(&other);
}

AArray& AArray::operator=(const AArray& other) {
    if (this == &other) return *this;
    RemoveAll();
    Add(&other);
    return *this;
}

AArray::~AArray() {
    RemoveAll();
}

void AArray::Add(const AObject* object, bool owned) {
    if (!object) return;
    AObject* entry = const_cast<AObject*>(object);
    entry->SetOwned(owned);
    _objects.push_back(entry);
}

void AArray::Add(const AObject& object) {
    Add(object.Clone(), true);
}

void AArray::Add(const ANumber& number) {
    Add(new ANumber(number), true);
}

void AArray::Add(const char* text) {
    if (text) Add(new AString(text), true);
}

void AArray::Add(const AArray* other) {
    if (!other) return;
    // By index and up to the count at the start, so that an array can be added to itself.
    const int count = other->Count();
    _objects.reserve(_objects.size() + static_cast<size_t>(count));
    for (int i = 0; i < count; ++i)
        Add(*other->ObjectAtIndex(i));
}

void AArray::RemoveObjectAtIndex(int index) {
    AObject* object = ObjectAtIndex(index);
    if (!object) return;
    _objects.erase(_objects.begin() + index);
    if (object->IsOwned()) delete object;
}

void AArray::RemoveAll() {
    const std::vector<AObject*> objects = std::move(_objects);
    _objects.clear();
    for (AObject* object : objects) {
        if (object->IsOwned()) delete object;
    }
}

AObject* AArray::ObjectAtIndex(int index) const {
    return index >= 0 && index < Count() ? _objects[static_cast<size_t>(index)] : nullptr;
}

const char* AArray::CStringAtIndex(int index) const {
    const AString* text = AStringAtIndex(index);
    return text ? text->c_str() : nullptr;
}

AArray* AArray::Clone() const {
    return new AArray(*this);
}

}  // namespace Quern
