#include "System/WWW/Transport/CurlError.h"

#include <strings.h>

#include "System/WWW/UrlSession.h"

namespace Quern {
namespace {

// OpenSSL's X509_V_ERR_ codes, as libcurl hands them on.
enum : long {
    kNotYetValid = 9,
    kHasExpired = 10,
    kSelfSigned = 18,
    kSelfSignedInChain = 19,
    kNoIssuer = 20,
};

int CertificateError(CURL* easy) {
    long verified = 0;
    curl_easy_getinfo(easy, CURLINFO_SSL_VERIFYRESULT, &verified);
    switch (verified) {
        case kNotYetValid:
            return kUrlCertificateNotYetValid;
        case kHasExpired:
            return kUrlCertificateHasBadDate;
        case kSelfSigned:
        case kSelfSignedInChain:
        case kNoIssuer:
            return kUrlCertificateHasUnknownRoot;
        default:
            return kUrlCertificateUntrusted;  // of another name, among others
    }
}

// libcurl gives one code to a scheme that it does not speak and to an answer that is not HTTP. The session has checked
// the first address, so a foreign scheme comes from a redirect. It is then the address in force if libcurl knows it;
// one that it has never heard of passes for an answer that is not HTTP.
int ProtocolError(CURL* easy) {
    const char* url = nullptr;
    curl_easy_getinfo(easy, CURLINFO_EFFECTIVE_URL, &url);
    const bool isHttp = url && (strncasecmp(url, "http:", 5) == 0 || strncasecmp(url, "https:", 6) == 0);
    return isHttp ? kUrlCannotParseResponse : kUrlUnsupportedURL;
}

}  // namespace

int UrlErrorOf(CURLcode result, CURL* easy) {
    switch (result) {
        case CURLE_OK:
            return kUrlNoError;
        case CURLE_UNSUPPORTED_PROTOCOL:
            return ProtocolError(easy);
        case CURLE_URL_MALFORMAT:
            return kUrlUnsupportedURL;
        case CURLE_COULDNT_RESOLVE_HOST:
        case CURLE_COULDNT_RESOLVE_PROXY:
            return kUrlCannotFindHost;
        case CURLE_COULDNT_CONNECT:
        case CURLE_PROXY:
            return kUrlCannotConnectToHost;
        case CURLE_OPERATION_TIMEDOUT:
            return kUrlTimedOut;
        case CURLE_PARTIAL_FILE:
        case CURLE_GOT_NOTHING:
        case CURLE_SEND_ERROR:
        case CURLE_SEND_FAIL_REWIND:  // a body that was not to be sent a second time
        case CURLE_RECV_ERROR:
        case CURLE_HTTP2:
        case CURLE_HTTP2_STREAM:
            return kUrlNetworkConnectionLost;
        case CURLE_TOO_MANY_REDIRECTS:
            return kUrlTooManyRedirects;
        case CURLE_BAD_CONTENT_ENCODING:
            return kUrlCannotDecodeContentData;
        case CURLE_WEIRD_SERVER_REPLY:
            return kUrlCannotParseResponse;
        case CURLE_PEER_FAILED_VERIFICATION:
        case CURLE_SSL_ISSUER_ERROR:
            return CertificateError(easy);
        case CURLE_SSL_CONNECT_ERROR:
        case CURLE_SSL_CIPHER:
        case CURLE_SSL_CACERT_BADFILE:
        case CURLE_SSL_ENGINE_INITFAILED:
            return kUrlSecureConnectionFailed;
        case CURLE_SSL_CERTPROBLEM:
            return kUrlClientCertificateRejected;
        default:
            return kUrlUnknown;
    }
}

}  // namespace Quern
