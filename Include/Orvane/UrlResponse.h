/// \file UrlResponse.h
/// An HTTP answer as plugins hand it to each other. Made by gs_OrvaneMakeUrlResponse (Orvane/WWW.h). Header-only,
/// C++11.
#ifndef ORVANE_URL_RESPONSE_H
#define ORVANE_URL_RESPONSE_H

namespace Quern {

/// The order of the virtual operations is a contract between libraries. Whoever got one owns it and deletes it.
/// Everything that it gives stays valid until then. Never changes, so any number of threads may read it.
class UrlResponse {
public:
    virtual ~UrlResponse() {}

    /// \return the header's value; null if the answer has none of exactly that name, and for a null name
    virtual const char* Header(const char* name) = 0;
    /// \return the address that answered; "" if none was given
    virtual const char* Url() = 0;
    /// \return the protocol and its version, "HTTP/1.1" if none was given
    virtual const char* Version() = 0;
    /// \return the status code; 0 if none was given
    virtual int Status() = 0;
    /// \return the status line's text; "" if none was given
    virtual const char* Message() = 0;
    /// \return the body's bytes, not terminated; null for an empty one
    virtual const char* Body() = 0;
    /// \return the body's length in bytes
    virtual long long BodyLength() = 0;
};

}  // namespace Quern

#endif
