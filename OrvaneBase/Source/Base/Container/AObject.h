// The root of the library's object family, which its parts pass to each other in place of standard strings and vectors.
//
// Ownership is a flag of the object, not of a link: a container deletes an entry whose flag is set. An object that two
// containers were told to own is deleted twice.
// Thread rule for the family: an object belongs to one thread at a time; nothing here locks.
#ifndef ORVANE_BASE_CONTAINER_A_OBJECT_H
#define ORVANE_BASE_CONTAINER_A_OBJECT_H

#include <cstdint>

namespace Quern {

enum AObjectType : int32_t {
    kTypeNone = 0,
    kTypeString = 1,
    kTypeNumber = 2,
    kTypeArray = 3,
    kTypeDictionary = 4,
    kTypeData = 5,
};

class AObject {
public:
    virtual ~AObject() = default;
    // Whether both are the same object; most classes compare values instead. Null is equal to nothing.
    virtual bool IsEqual(const AObject* other) const;
    // A new, unowned object of the same value, which the caller deletes or hands to a container.
    virtual AObject* Clone() const = 0;

    AObjectType GetObjectType() const { return _type; }
    // Whether the container that holds this object deletes it.
    bool IsOwned() const { return _owned; }
    void SetOwned(bool owned) { _owned = owned; }

protected:
    explicit AObject(AObjectType type) : _type(type) {}
    // The flag belongs to the object's place in a container and is no part of its value.
    AObject(const AObject& other) : _type(other._type) {}
    AObject& operator=(const AObject&) { return *this; }

private:
    AObjectType _type;
    bool _owned = false;
};

}  // namespace Quern

#endif
