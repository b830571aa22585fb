// The library's error codes of HTTP tasks in words, for the texts and the JSON of get, post and download.
#ifndef ORVANE_TOOLS_NET_WWW_ERROR_H
#define ORVANE_TOOLS_NET_WWW_ERROR_H

#include "Orvane/WWWTask.h"

namespace OrvaneNet {

// In English, without a full stop, to stand behind "URL: ". A literal, valid for the process; never null. The last
// words cover the one code that the library gives for several causes.
inline const char* WordsOf(Quern::WWWErrorCode error) {
    switch (error) {
        case Quern::kWWWErrorNone:
            return "no error";
        case Quern::kWWWErrorTimedOut:
            return "timed out";
        case Quern::kWWWErrorCannotFindHost:
            return "the host is unknown";
        case Quern::kWWWErrorUnsupportedURL:
            return "a URL of another scheme, or without a host";
        case Quern::kWWWErrorConnectionLost:
            return "the connection was lost";
        case Quern::kWWWErrorFile:
            return "the file cannot be written";
        default:
            return "no connection, an answer that is no HTTP, or a certificate that is not trusted";
    }
}

}  // namespace OrvaneNet

#endif
