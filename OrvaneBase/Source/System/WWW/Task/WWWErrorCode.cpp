#include "System/WWW/Task/WWWErrorCode.h"

#include "System/WWW/UrlSession.h"

namespace Quern {

WWWErrorCode ConvertToWWWErrorCode(int platformCode) {
    // The platform's codes around a file that is downloaded: creating, opening, closing, writing, removing, moving and
    // decoding it.
    constexpr int kFirstFileError = -3007;
    constexpr int kLastFileError = -3000;
    switch (platformCode) {
        case kUrlNoError:
            return kWWWErrorNone;
        case kUrlTimedOut:
            return kWWWErrorTimedOut;
        case kUrlCannotFindHost:
            return kWWWErrorCannotFindHost;
        case kUrlUnsupportedURL:
            return kWWWErrorUnsupportedURL;
        case kUrlNetworkConnectionLost:
            return kWWWErrorConnectionLost;
        default:
            return platformCode >= kFirstFileError && platformCode <= kLastFileError ? kWWWErrorFile : kWWWErrorOther;
    }
}

}  // namespace Quern
