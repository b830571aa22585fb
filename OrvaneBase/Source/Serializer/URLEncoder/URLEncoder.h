// The encoding of URL query values: "+" for a space, "%" and two hexadecimal digits for what is not unreserved. Any
// thread.
#ifndef ORVANE_SERIALIZER_URLENCODER_URLENCODER_H
#define ORVANE_SERIALIZER_URLENCODER_URLENCODER_H

#include <string>

namespace Quern {

class URLEncoder {
public:
    // ASCII letters, digits, "-", ".", "_" and "~" stay; a space becomes "+"; any other byte "%" and upper-case digits.
    static std::string Encode(const std::string& text);

    // The reverse. Only for text that Encode made: a "%" with fewer than two characters behind it, or with one that is
    // neither a letter nor a digit, ends the process. Letters beyond F count on as digits of 16 and more, modulo 256.
    static std::string Decode(const std::string& text);
};

}  // namespace Quern

// The upper-case digit of a value up to 15.
unsigned char URLEncoderToHex(unsigned char value);
// The value of a digit; 10 and more for letters of either case. Any other character ends the process.
unsigned char URLEncoderFromHex(unsigned char digit);

#endif
