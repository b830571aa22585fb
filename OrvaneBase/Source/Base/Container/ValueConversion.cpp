// What a Value is as a plain type.
#include <cfloat>
#include <cstdio>
#include <cstring>

#include "Base/Container/StringConversion.h"
#include "Base/Container/Truncation.h"
#include "Base/Container/Value.h"
#include "Base/XLog.h"

namespace Quern {
namespace {

// Room for the longest double: a sign, its whole part, the point, six places and the terminator.
constexpr size_t kFractionCapacity = 1 + DBL_MAX_10_EXP + 1 + 1 + 6 + 1;

const char* BoolText(bool value) {
    return value ? "true" : "false";
}

}  // namespace

long long Value::asInt64() const {
    switch (_type) {
        case NullValue:
            return 0;
        case IntValue:
            return _int;
        case UIntValue:
            return static_cast<long long>(_uint);
        case RealValue:
            return TruncateToInt64(_real);
        case BoolValue:
            return _bool;
        case StringValue:
        case ArrayValue:
        case ObjectValue:
            ORVANE_LOG_WARNING("Type is not convertible to Int64");
            return 0;
    }
    ReportUnsupportedType();
    return 0;
}

unsigned long long Value::asUInt64() const {
    switch (_type) {
        case NullValue:
            return 0;
        case IntValue:
            ORVANE_LOG_WARNING("Negative integer can not be converted to UInt64");
            return static_cast<unsigned long long>(_int);
        case UIntValue:
            return _uint;
        case RealValue:
            return TruncateToUInt64(_real);
        case BoolValue:
            return _bool;
        case StringValue:
        case ArrayValue:
        case ObjectValue:
            ORVANE_LOG_WARNING("Type is not convertible to UInt64");
            return 0;
    }
    ReportUnsupportedType();
    return 0;
}

int Value::asInt32() const {
    if (!isString() && !IsContainer()) return static_cast<int>(asInt64());
    ORVANE_LOG_WARNING("Type is not convertible to int");
    return 0;
}

unsigned int Value::asUInt32() const {
    if (!isString() && !IsContainer()) return static_cast<unsigned int>(asInt64());
    ORVANE_LOG_WARNING("Type is not convertible to uint");
    return 0;
}

bool Value::asBool() const {
    switch (_type) {
        case NullValue:
            return false;
        case IntValue:
            return _int != 0;
        case UIntValue:
            return _uint != 0;
        case RealValue:
            return _real != 0;
        case StringValue:
            return _text && strcmp(_text, "true") == 0;
        case BoolValue:
            return _bool;
        case ArrayValue:
        case ObjectValue:
            return !_map->empty();
    }
    ReportUnsupportedType();
    return false;
}

double Value::asDouble() const {
    switch (_type) {
        case NullValue:
            return 0;
        case IntValue:
            return static_cast<double>(_int);
        case UIntValue:
            return static_cast<double>(_uint);
        case RealValue:
            return _real;
        case BoolValue:
            return _bool ? 1.0 : 0.0;
        case StringValue:
        case ArrayValue:
        case ObjectValue:
            ORVANE_LOG_ERROR("Type is not convertible to double");
            return 0;
    }
    ReportUnsupportedType();
    return 0;
}

AString Value::asString() const {
    if (isIntegral()) return ll2str(asInt64());
    if (!isDouble()) return asCString();
    char text[kFractionCapacity];
    return {text, snprintf(text, sizeof text, "%f", _real)};
}

const char* Value::asCString() const {
    switch (_type) {
        case NullValue:
            return "";
        case StringValue:
            return _text ? _text : "";
        case BoolValue:
            return BoolText(_bool);
        case IntValue:
        case UIntValue:
        case RealValue:
        case ArrayValue:
        case ObjectValue:
            ORVANE_LOG_ERROR("Type is not convertible to String");
            return "";
    }
    ReportUnsupportedType();
    return "";
}

}  // namespace Quern
