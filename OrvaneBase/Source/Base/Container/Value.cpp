#include "Base/Container/Value.h"

#include <cstring>
#include <utility>

#include "Base/Assert.h"
#include "Base/Container/ValueIteratorImpl.h"
#include "Base/XLog.h"

namespace Quern {
namespace {

// Longer texts of digits might not fit 64 bits, and stay texts.
constexpr size_t kNumericTextLimit = 19;

}  // namespace

// Stands before any initialiser runs, and is never destroyed: read from threads that outlive static objects.
union Value::NullStorage {
    constexpr NullStorage() : value(ConstantNull()) {}
    ~NullStorage() {}
    Value value;
    static NullStorage shared;
};
constinit Value::NullStorage Value::NullStorage::shared;
constinit const Value& Value::Null = NullStorage::shared.value;

Value::Value(ValueType type) : _int(0), _type(type) {
    switch (type) {
        case NullValue:
        case IntValue:
        case UIntValue:
            break;
        case RealValue:
            _real = 0;
            break;
        case StringValue:
            _text = nullptr;
            break;
        case BoolValue:
            _bool = false;
            break;
        case ArrayValue:
        case ObjectValue:
            _map = new ValueMap;
            break;
        default:
            ORVANE_LOG_ERROR("Unsupport type:%d", type);
    }
}

Value::Value(int value) : _int(value), _type(IntValue) {}

Value::Value(unsigned int value) : _uint(value), _type(UIntValue) {}

Value::Value(long long value) : _int(value), _type(IntValue) {}

Value::Value(unsigned long long value) : _uint(value), _type(UIntValue) {}

Value::Value(double value) : _real(value), _type(RealValue) {}

Value::Value(const char* text) : Value(StringValue) {
    if (!text || strlen(text) >= kNumericTextLimit || !AString::IsNumberic(text)) {
        _text = duplicateStringValue(text);
    } else if (AString::IsReal(text)) {
        _type = RealValue;
        _real = AString(text).AsDouble();
    } else {
        _type = IntValue;
        _int = AString(text).AsInt64();
    }
}

Value::Value(const Value& other) : _int(0), _type(other._type) {
    if (isString())
        _text = duplicateStringValue(other._text);
    else if (IsContainer())
        _map = new ValueMap(*other._map);
    else
        memcpy(&_int, &other._int, sizeof _int);
}

Value::Value(Value&& other) noexcept : _int(0), _type(NullValue) {
    swap(other);
}

Value& Value::operator=(Value other) noexcept {
    swap(other);
    return *this;
}

Value::~Value() {
    if (isString())
        releaseStringValue(_text);
    else if (IsContainer())
        delete _map;
}

void Value::swap(Value& other) noexcept {
    // No member is wider than _int, so its bytes stand for whichever member is in force.
    char bits[sizeof _int];
    memcpy(bits, &_int, sizeof bits);
    memcpy(&_int, &other._int, sizeof bits);
    memcpy(&other._int, bits, sizeof bits);
    std::swap(_type, other._type);
}

bool Value::isBool() const {
    if (!isString()) return _type == BoolValue;
    return _text && (strcmp(_text, "true") == 0 || strcmp(_text, "false") == 0);
}

Value& Value::operator[](int index) {
    ORVANE_ASSERT(_type == ArrayValue || _type == NullValue);
    if (isNull()) *this = Value(ArrayValue);
    return ElementAt(ValueString(index));
}

Value& Value::operator[](const char* name) {
    ORVANE_ASSERT(_type == ObjectValue || _type == NullValue);
    if (isNull()) *this = Value(ObjectValue);
    return ElementAt(ValueString(name ? name : "", kDuplicateOnCopy));
}

const Value& Value::operator[](int index) const {
    ORVANE_ASSERT(_type == NullValue || _type == ArrayValue);
    return ElementAt(ValueString(index));
}

const Value& Value::operator[](const char* name) const {
    ORVANE_ASSERT(_type == NullValue || _type == ObjectValue);
    return ElementAt(ValueString(name ? name : "", kNoDuplication));
}

// A new entry holds a copy of the key, which by its policy owns its text.
Value& Value::ElementAt(const ValueString& key) {
    return _map->try_emplace(key, NullValue).first->second;
}

const Value& Value::ElementAt(const ValueString& key) const {
    if (isNull()) return Null;
    const auto found = _map->find(key);
    return found == _map->end() ? Null : found->second;
}

int Value::Size() const {
    return IsContainer() ? static_cast<int>(_map->size()) : 0;
}

void Value::ReportUnsupportedType() const {
    ORVANE_LOG_ERROR("Unsupported type:%d", _type);
}

ValueIterator Value::begin() {
    return ValueIterator(IsContainer() ? new ValueIteratorImpl(*_map, _map->begin()) : nullptr);
}

ValueIterator Value::end() {
    return ValueIterator(IsContainer() ? new ValueIteratorImpl(*_map, _map->end()) : nullptr);
}

ValueConstIterator Value::begin() const {
    return ValueConstIterator(IsContainer() ? new ValueConstIteratorImpl(*_map, _map->begin()) : nullptr);
}

ValueConstIterator Value::end() const {
    return ValueConstIterator(IsContainer() ? new ValueConstIteratorImpl(*_map, _map->end()) : nullptr);
}

bool operator<(const Value& left, const Value& right) {
    if (left._type != right._type) return left._type < right._type;
    switch (left._type) {
        case NullValue:
            return false;
        case IntValue:
            // On purpose by the low 32 bits: equality alone takes all 64.
            return static_cast<int32_t>(left._int) < static_cast<int32_t>(right._int);
        case UIntValue:
            return left._uint < right._uint;
        case RealValue:
            return left._real < right._real;
        case StringValue:
            if (!left._text || !right._text) return !left._text && right._text;
            return strcmp(left._text, right._text) < 0;
        case BoolValue:
            return left._bool < right._bool;
        case ArrayValue:
        case ObjectValue:
            if (left._map->size() != right._map->size()) return left._map->size() < right._map->size();
            return *left._map < *right._map;
    }
    left.ReportUnsupportedType();
    return false;
}

bool operator==(const Value& left, const Value& right) {
    if (left._type != right._type) return false;
    switch (left._type) {
        case NullValue:
            return true;
        case IntValue:
            return left._int == right._int;
        case UIntValue:
            return left._uint == right._uint;
        case RealValue:
            return left._real == right._real;
        case StringValue:
            if (left._text == right._text) return true;
            return left._text && right._text && strcmp(left._text, right._text) == 0;
        case BoolValue:
            return left._bool == right._bool;
        case ArrayValue:
        case ObjectValue:
            return *left._map == *right._map;
    }
    left.ReportUnsupportedType();
    return false;
}

}  // namespace Quern
