// From libcurl's results to the platform's error codes.
#ifndef ORVANE_SYSTEM_WWW_TRANSPORT_CURL_ERROR_H
#define ORVANE_SYSTEM_WWW_TRANSPORT_CURL_ERROR_H

#include <curl/curl.h>

namespace Quern {

// `easy` is the handle that ended so. kUrlUnknown for what has no code of its own.
int UrlErrorOf(CURLcode result, CURL* easy);

}  // namespace Quern

#endif
