// An entry of an observer set: points at an object without keeping it alive.
#ifndef ORVANE_SYSTEM_APPLICATION_UNRETAINED_POINTER_H
#define ORVANE_SYSTEM_APPLICATION_UNRETAINED_POINTER_H

namespace Quern {

// The object removes itself from the set before it dies. Two are equal if they hold the identical object.
template <typename Object>
class UnretainedPointer {
public:
    static UnretainedPointer pointerWithObject(Object* object) { return UnretainedPointer(object); }

    // Not looked into here: dead if the object broke the rule.
    Object* object() const { return _object; }
    bool isEqual(const UnretainedPointer& other) const { return _object == other._object; }

private:
    explicit UnretainedPointer(Object* object) : _object(object) {}

    Object* _object;
};

template <typename Object>
bool operator==(const UnretainedPointer<Object>& left, const UnretainedPointer<Object>& right) {
    return left.isEqual(right);
}

}  // namespace Quern

#endif
