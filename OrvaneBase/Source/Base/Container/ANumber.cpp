#include "Base/Container/ANumber.h"

#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "Base/Container/StringConversion.h"
#include "Base/Container/Truncation.h"

namespace Quern {
namespace {

constexpr double kTolerance = 1e-6;
// Room for the longest double: a sign, its whole part, the point, six places and the terminator.
constexpr size_t kFractionCapacity = 1 + DBL_MAX_10_EXP + 1 + 1 + 6 + 1;

}  // namespace

ANumber::ANumber(unsigned char value) : ANumber() {
    _byte = value;
    _type = kNumberByte;
}

ANumber::ANumber(int value) : ANumber() {
    _int32 = value;
    _type = kNumberInt32;
}

ANumber::ANumber(long long value) : ANumber() {
    _int64 = value;
    _type = kNumberInt64;
}

ANumber::ANumber(float value) : ANumber() {
    _float = value;
    _type = kNumberFloat;
}

ANumber::ANumber(double value) : ANumber() {
    _double = value;
    _type = kNumberDouble;
}

void ANumber::SetBool(bool value) {
    _bool = value;
    _type = kNumberBool;
}

const char* ANumber::GetTypeString() const {
    static const char* const kWords[] = {"Unknown", "Bool", "Byte", "Int32", "Int64", "Float", "Double"};
    return kWords[_type];
}

bool ANumber::BoolValue() const {
    return IsFractional() ? DoubleValue() != 0 : LongLongValue() != 0;
}

long long ANumber::LongLongValue() const {
    switch (_type) {
        case kNumberNull:
            return 0;
        case kNumberBool:
            return _bool;
        case kNumberByte:
            return _byte;
        case kNumberInt32:
            return _int32;
        case kNumberInt64:
            return _int64;
        case kNumberFloat:
            return TruncateToInt64(static_cast<double>(_float));
        case kNumberDouble:
            return TruncateToInt64(_double);
    }
    return 0;
}

float ANumber::FloatValue() const {
    if (_type == kNumberFloat) return _float;
    return _type == kNumberDouble ? static_cast<float>(_double) : static_cast<float>(LongLongValue());
}

double ANumber::DoubleValue() const {
    if (_type == kNumberDouble) return _double;
    return _type == kNumberFloat ? static_cast<double>(_float) : static_cast<double>(LongLongValue());
}

AString ANumber::ToString() const {
    if (IsNull()) return {};
    if (_type == kNumberBool) return bool2str(_bool);
    if (!IsFractional()) return ll2str(LongLongValue());
    char text[kFractionCapacity];
    return {text, snprintf(text, sizeof text, "%f", DoubleValue())};
}

bool ANumber::FromString(const char* text) {
    if (!text) return false;
    if (strchr(text, '.')) {
        *this = ANumber(atof(text));
        return true;
    }
    const long long value = strtoll(text, nullptr, 0);
    if (value >= 0 && value <= UCHAR_MAX)
        *this = ANumber(static_cast<unsigned char>(value));
    else if (value > INT_MIN && value <= UINT_MAX)
        *this = ANumber(static_cast<int>(value));
    else
        *this = ANumber(value);
    return true;
}

bool ANumber::IsEqual(const AObject* other) const {
    return other && other->GetObjectType() == kTypeNumber && EqualsNumber(static_cast<const ANumber&>(*other));
}

bool ANumber::EqualsNumber(const ANumber& other) const {
    if (this == &other || (IsNull() && other.IsNull())) return true;
    if (_type == kNumberBool || other._type == kNumberBool) return BoolValue() == other.BoolValue();
    if (!IsFractional() && !other.IsFractional()) return LongLongValue() == other.LongLongValue();
    const double left = DoubleValue();
    const double right = other.DoubleValue();
    if ((left < 0 && right > 0) || (left > 0 && right < 0)) return false;
    return std::fabs(left - right) < kTolerance;
}

ANumber* ANumber::Clone() const {
    return new ANumber(*this);
}

bool BoolVal(const AObject& number) {
    return static_cast<const ANumber&>(number).BoolValue();
}
bool BoolVal(const AObject* number) {
    return number && BoolVal(*number);
}
unsigned char ByteVal(const AObject& number) {
    return static_cast<const ANumber&>(number).ByteValue();
}
unsigned char ByteVal(const AObject* number) {
    return number ? ByteVal(*number) : 0;
}
int IntVal(const AObject& number) {
    return static_cast<const ANumber&>(number).IntValue();
}
int IntVal(const AObject* number) {
    return number ? IntVal(*number) : 0;
}
long long LongLongVal(const AObject& number) {
    return static_cast<const ANumber&>(number).LongLongValue();
}
long long LongLongVal(const AObject* number) {
    return number ? LongLongVal(*number) : 0;
}
float FloatVal(const AObject& number) {
    return static_cast<const ANumber&>(number).FloatValue();
}
float FloatVal(const AObject* number) {
    return number ? FloatVal(*number) : 0;
}
double DoubleVal(const AObject& number) {
    return static_cast<const ANumber&>(number).DoubleValue();
}
double DoubleVal(const AObject* number) {
    return number ? DoubleVal(*number) : 0;
}

}  // namespace Quern
