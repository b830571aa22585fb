// The library's variant: a tree of nulls, numbers, texts, booleans, arrays and objects. What remote configuration,
// bundles and the manifest hold and give.
//
// Conversions never fail: they log and give a neutral value. Using a value as a container that it is not ends the
// process. Thread rule: no lock; one thread at a time, or any number that only read.
#ifndef ORVANE_BASE_CONTAINER_VALUE_H
#define ORVANE_BASE_CONTAINER_VALUE_H

#include <concepts>
#include <map>

#include "Base/Container/AString.h"
#include "Base/Container/ValueIterator.h"
#include "Base/Container/ValueString.h"

namespace Quern {

enum ValueType : int32_t {
    NullValue = 0,
    IntValue = 1,     // signed, 64 bits
    UIntValue = 2,    // unsigned, 64 bits
    RealValue = 3,    // a double
    StringValue = 4,  // a text, which may be null
    BoolValue = 5,
    ArrayValue = 6,   // values by index, and only those that were set
    ObjectValue = 7,  // values by name
};

class Value;
// Both containers: an array is keyed by index, an object by name.
using ValueMap = std::map<ValueString, Value>;

class Value {
public:
    // What a read of something missing gives. Shared: it must not be written.
    static const Value& Null;

    Value(ValueType type = NullValue);
    Value(int value);
    Value(unsigned int value);
    Value(long long value);
    Value(unsigned long long value);
    Value(double value);
    // A text of less than 19 characters that AString::IsNumberic takes for a number becomes one: a RealValue if
    // AString::IsReal takes it for that, else an IntValue. All others, null too, are a StringValue.
    Value(const char* text);
    // Only a true bool: a pointer, which the language would turn into one, does not compile.
    template <std::same_as<bool> T>
    Value(T value) : Value(BoolValue) {
        _bool = value;
    }
    Value(const Value& other);
    Value(Value&& other) noexcept;
    Value& operator=(Value other) noexcept;
    ~Value();
    void swap(Value& other) noexcept;

    ValueType type() const { return _type; }
    bool isNull() const { return _type == NullValue; }
    bool isInt() const { return _type == IntValue; }
    bool isUInt() const { return _type == UIntValue; }
    bool isIntegral() const { return isInt() || isUInt(); }
    bool isDouble() const { return _type == RealValue; }
    bool isNumeric() const { return isIntegral() || isDouble(); }
    bool isString() const { return _type == StringValue; }
    // Also for the texts "true" and "false".
    bool isBool() const;
    bool isArray() const { return _type == ArrayValue; }
    bool isObject() const { return _type == ObjectValue; }

    // The conversions, whose bodies are in ValueConversion.cpp.
    //
    // Fractions are cut off; what is too large for the result keeps its low bits. Texts and containers give 0, with a
    // warning. asUInt64 warns for every IntValue, and converts it.
    long long asInt64() const;
    unsigned long long asUInt64() const;
    int asInt32() const;
    unsigned int asUInt32() const;
    // Numbers: not 0. Texts: "true". Containers: not empty.
    bool asBool() const;
    // Texts and containers give 0, with an error.
    double asDouble() const;
    double asFloat() const { return asDouble(); }
    // Containers give an empty text, with an error. A UIntValue is printed as the signed number of the same bits.
    AString asString() const;
    // The same for null, texts and booleans alone. Never null; valid until the value changes.
    const char* asCString() const;

    // The element of an array or object; a null value becomes one. What is missing is made, as null. A null name is "".
    // REQUIRES: the value is null or a container of that kind.
    Value& operator[](int index);
    Value& operator[](const char* name);
    // The same, but what is missing gives Null.
    const Value& operator[](int index) const;
    const Value& operator[](const char* name) const;
    // The entries of a container, else 0.
    int Size() const;

    // Over the entries of a container in order of their keys; over nothing for all others.
    ValueIterator begin();
    ValueIterator end();
    ValueConstIterator begin() const;
    ValueConstIterator end() const;

    // Values of different types are ordered by type and never equal. An IntValue is ordered by its low 32 bits, yet
    // equal only in all 64; containers are ordered by size first.
    friend bool operator<(const Value& left, const Value& right);
    friend bool operator==(const Value& left, const Value& right);
    friend bool operator<=(const Value& left, const Value& right) { return !(right < left); }
    friend bool operator>=(const Value& left, const Value& right) { return !(left < right); }
    friend bool operator>(const Value& left, const Value& right) { return right < left; }

private:
    struct ConstantNull {};
    union NullStorage;

    constexpr explicit Value(ConstantNull) : _int(0), _type(NullValue) {}
    bool IsContainer() const { return isArray() || isObject(); }
    void ReportUnsupportedType() const;
    Value& ElementAt(const ValueString& key);
    const Value& ElementAt(const ValueString& key) const;

    union {
        int64_t _int;
        uint64_t _uint;
        double _real;
        char* _text;  // owned
        bool _bool;
        ValueMap* _map;  // owned
    };
    ValueType _type;
};

}  // namespace Quern

#endif
