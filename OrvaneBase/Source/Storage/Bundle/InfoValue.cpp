#include "Storage/Bundle/InfoValue.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string_view>

namespace Quern {
namespace {

// Towards zero; what lies outside the type gives its nearest value, and what is no number 0.
template <typename Integer>
Integer FromReal(double real) {
    using Limits = std::numeric_limits<Integer>;
    if (std::isnan(real)) return 0;
    if (real <= static_cast<double>(Limits::min())) return Limits::min();
    if (real >= static_cast<double>(Limits::max())) return Limits::max();
    return static_cast<Integer>(real);
}

bool TextAsBool(const char* text) {
    while (*text == ' ' || *text == '\t')
        ++text;
    if (*text == '+' || *text == '-') ++text;
    while (*text == '0')
        ++text;
    return *text && strchr("YyTt123456789", *text);
}

}  // namespace

bool InfoValue::IsNumber() const {
    return std::holds_alternative<bool>(value) || std::holds_alternative<long long>(value) ||
           std::holds_alternative<double>(value);
}

const InfoValue* InfoValue::Find(const char* key) const {
    if (const auto* entries = std::get_if<Dictionary>(&value)) {
        const std::string_view wanted(key);
        for (const Entry& entry : *entries) {
            if (entry.key == wanted) return &entry.value;
        }
    }
    return nullptr;
}

int InfoValue::IntValue() const {
    if (const double* real = std::get_if<double>(&value)) return FromReal<int>(*real);
    return IsNumber() ? static_cast<int>(LongLongValue()) : 0;
}

long long InfoValue::LongLongValue() const {
    if (const bool* boolean = std::get_if<bool>(&value)) return *boolean;
    if (const long long* integer = std::get_if<long long>(&value)) return *integer;
    if (const double* real = std::get_if<double>(&value)) return FromReal<long long>(*real);
    return Text() ? strtoll(Text()->c_str(), nullptr, 10) : 0;
}

bool InfoValue::BoolValue() const {
    if (const double* real = std::get_if<double>(&value)) return *real != 0;
    return Text() ? TextAsBool(Text()->c_str()) : LongLongValue() != 0;
}

}  // namespace Quern
