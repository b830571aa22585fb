// Base64 with the standard alphabet (RFC 4648, section 4) and a decoder that never complains. Any thread.
#ifndef ORVANE_SERIALIZER_CODEC_BASE64_H
#define ORVANE_SERIALIZER_CODEC_BASE64_H

#include <string>

namespace Quern {

// Four characters for every three bytes, the tail filled up with "="; no line breaks.
std::string base64_encode(const unsigned char* bytes, unsigned int length);

// The bytes of the text up to its first "=" or other character outside the alphabet. An incomplete last group of two or
// three characters gives one or two bytes, one of a single character nothing.
std::string base64_decode(const std::string& text);

// Whether the character belongs to the alphabet; "=" does not.
bool is_base64(unsigned char character);

}  // namespace Quern

#endif
