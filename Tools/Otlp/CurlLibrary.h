// libcurl, opened when it is needed. It brings some thirty libraries with it, which a game that forwards nothing, and a
// reader that only prints, would load at each start. The header of libcurl is compiled against; no function of it is
// linked.
#ifndef ORVANE_TOOLS_OTLP_CURL_LIBRARY_H
#define ORVANE_TOOLS_OTLP_CURL_LIBRARY_H

// The header checks the types of options by macros that name the functions, which would link them.
#define CURL_DISABLE_TYPECHECK
#include <curl/curl.h>

#include <string>

namespace OrvaneOtlp {

// The functions that the sender uses, each under its own name without "curl_". Valid once Open gave true.
struct CurlLibrary {
    decltype(&::curl_global_init) globalInit;
    decltype(&::curl_easy_init) easyInit;
    decltype(&::curl_easy_setopt) easySetopt;
    decltype(&::curl_easy_getinfo) easyGetinfo;
    decltype(&::curl_easy_strerror) easyStrerror;
    decltype(&::curl_easy_cleanup) easyCleanup;
    decltype(&::curl_slist_append) slistAppend;
    decltype(&::curl_slist_free_all) slistFreeAll;
    decltype(&::curl_multi_init) multiInit;
    decltype(&::curl_multi_add_handle) multiAddHandle;
    decltype(&::curl_multi_remove_handle) multiRemoveHandle;
    decltype(&::curl_multi_perform) multiPerform;
    decltype(&::curl_multi_poll) multiPoll;
    decltype(&::curl_multi_wakeup) multiWakeup;
    decltype(&::curl_multi_info_read) multiInfoRead;
    decltype(&::curl_multi_cleanup) multiCleanup;

    // Opens "libcurl.so.4", finds the functions and starts the library. Any thread. False, and why in `problem`, if
    // there is no such library or it lacks one of them. It stays loaded for the life of the process.
    bool Open(std::string& problem);
};

}  // namespace OrvaneOtlp

#endif
