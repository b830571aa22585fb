// The family's number: one of six types, or null.
#ifndef ORVANE_BASE_CONTAINER_A_NUMBER_H
#define ORVANE_BASE_CONTAINER_A_NUMBER_H

#include <concepts>

#include "Base/Container/AString.h"

namespace Quern {

enum ANumberType : int32_t {
    kNumberNull = 0,
    kNumberBool = 1,
    kNumberByte = 2,
    kNumberInt32 = 3,
    kNumberInt64 = 4,
    kNumberFloat = 5,
    kNumberDouble = 6,
};

// Each constructor and assignment takes over the type of its argument. Only a true bool makes a Bool: a pointer, which
// the language would turn into one, does not compile.
class ANumber : public AObject {
public:
    ANumber() : AObject(kTypeNumber) {}
    ANumber(unsigned char value);
    ANumber(int value);
    ANumber(long long value);
    ANumber(float value);
    ANumber(double value);
    template <std::same_as<bool> T>
    ANumber(T value) : ANumber() {
        SetBool(value);
    }
    ANumber(const ANumber& other) = default;
    ANumber& operator=(const ANumber& other) = default;

    ANumberType GetType() const { return _type; }
    // "Unknown", "Bool", "Byte", "Int32", "Int64", "Float" or "Double".
    const char* GetTypeString() const;
    bool IsNull() const { return _type == kNumberNull; }

    // Null gives 0. A wider integer is cut to its low bits; a fraction is cut off, and a float too large for 64 bits
    // gives the nearest 64-bit integer.
    bool BoolValue() const;  // whether it is not 0
    unsigned char ByteValue() const { return static_cast<unsigned char>(LongLongValue()); }
    int IntValue() const { return static_cast<int>(LongLongValue()); }
    long long LongLongValue() const;
    float FloatValue() const;
    double DoubleValue() const;

    // "true" or "false", a decimal integer, or a fraction with six places; empty for null.
    AString ToString() const;
    // Takes over the number in a text. With a "." in it: a Double. Otherwise an integer with the prefixes of C (0x, 0):
    // a Byte from 0 to 255, an Int32 from -2147483647 to 4294967295 (cut to 32 bits, so that values from 2147483648 up
    // wrap), else an Int64. A text without a number is 0. False, with no change, for null.
    bool FromString(const char* text);

    // Truth values are compared if either is a Bool; floats and doubles agree within 1e-6 unless their signs differ;
    // integers agree in value, where null is 0.
    bool IsEqual(const AObject* other) const override;
    ANumber* Clone() const override;
    friend bool operator==(const ANumber& left, const ANumber& right) { return left.EqualsNumber(right); }

private:
    bool IsFractional() const { return _type == kNumberFloat || _type == kNumberDouble; }
    bool EqualsNumber(const ANumber& other) const;
    void SetBool(bool value);

    // _type says which of these holds.
    union {
        bool _bool;
        unsigned char _byte;
        int32_t _int32;
        int64_t _int64 = 0;
        float _float;
        double _double;
    };
    ANumberType _type = kNumberNull;
};

// The value of an object that the caller knows to be an ANumber: the type is not checked. Null gives 0.
bool BoolVal(const AObject* number);
bool BoolVal(const AObject& number);
unsigned char ByteVal(const AObject* number);
unsigned char ByteVal(const AObject& number);
int IntVal(const AObject* number);
int IntVal(const AObject& number);
long long LongLongVal(const AObject* number);
long long LongLongVal(const AObject& number);
float FloatVal(const AObject* number);
float FloatVal(const AObject& number);
double DoubleVal(const AObject* number);
double DoubleVal(const AObject& number);

}  // namespace Quern

#endif
