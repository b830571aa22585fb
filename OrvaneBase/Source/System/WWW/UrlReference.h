// The syntax of addresses, RFC 3986.
#ifndef ORVANE_SYSTEM_WWW_URL_REFERENCE_H
#define ORVANE_SYSTEM_WWW_URL_REFERENCE_H

#include <string_view>

namespace Quern {

// The parts that the transport is chosen by; they point into the text.
struct UrlReference {
    std::string_view scheme;  // empty for a relative reference
    std::string_view host;    // empty if there is none; an IP literal with its brackets

    // Whether the scheme is http or https, in any case, and there is a host.
    bool IsHttp() const;
    bool IsHttps() const;
};

// Whether the text is a URI reference by the letter of RFC 3986: no blank, no control character, no byte above 127, no
// stray percent sign. A relative one counts, and the empty text too. `out`, where given, gets the parts of a good one.
bool ParseUrlReference(std::string_view text, UrlReference* out = nullptr);

}  // namespace Quern

#endif
