#include "Base/Container/StringConversion.h"

#include <locale.h>

#include <cstdio>
#include <cstdlib>

namespace Quern {
namespace {

// Room for the 20 digits of the longest 64-bit number, or for 19 and a sign, and the terminator.
constexpr size_t kNumberCapacity = 24;

}  // namespace

AString int2str(int value) {
    char text[kNumberCapacity];
    return {text, snprintf(text, sizeof text, "%d", value)};
}

AString ll2str(long long value) {
    char text[kNumberCapacity];
    return {text, snprintf(text, sizeof text, "%lld", value)};
}

AString ull2str(unsigned long long value) {
    char text[kNumberCapacity];
    return {text, snprintf(text, sizeof text, "%llu", value)};
}

AString bool2str(bool value) {
    return {value ? "true" : "false"};
}

bool str2int(const char* text, int* result) {
    return text && result && sscanf(text, "%d", result) == 1;
}

int str2int(const char* text) {
    int result = 0;
    return str2int(text, &result) ? result : 0;
}

bool str2double(const char* text, double* result) {
    static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
    if (!text || !result) return false;
    char* end = nullptr;
    const double number = strtod_l(text, &end, plain);
    if (end == text) return false;
    *result = number;
    return true;
}

}  // namespace Quern
