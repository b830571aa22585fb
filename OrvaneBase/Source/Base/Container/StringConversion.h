// Numbers to text and back.
#ifndef ORVANE_BASE_CONTAINER_STRING_CONVERSION_H
#define ORVANE_BASE_CONTAINER_STRING_CONVERSION_H

#include "Base/Container/AString.h"

namespace Quern {

AString int2str(int value);
AString ll2str(long long value);
AString ull2str(unsigned long long value);
// "true" or "false".
AString bool2str(bool value);

// The decimal number at the start of a text, behind white space. False, with the result untouched, if there is none or
// an argument is null.
bool str2int(const char* text, int* result);
// The same; 0 if there is none.
int str2int(const char* text);
// The number, with a point and an exponent too, whatever the locale: as above.
bool str2double(const char* text, double* result);

}  // namespace Quern

#endif
