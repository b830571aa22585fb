#include "Otlp/CurlLibrary.h"

#include <dlfcn.h>

namespace OrvaneOtlp {
namespace {

constexpr char kLibrary[] = "libcurl.so.4";

template <typename Function>
bool Find(void* library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(dlsym(library, name));
    return function != nullptr;
}

}  // namespace

bool CurlLibrary::Open(std::string& problem) {
    // Never unloaded: libcurl and what it brings have left functions that run at the end of the process.
    void* const library = dlopen(kLibrary, RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    const bool isWhole =
        library && Find(library, "curl_global_init", globalInit) && Find(library, "curl_easy_init", easyInit) &&
        Find(library, "curl_easy_setopt", easySetopt) && Find(library, "curl_easy_getinfo", easyGetinfo) &&
        Find(library, "curl_easy_strerror", easyStrerror) && Find(library, "curl_easy_cleanup", easyCleanup) &&
        Find(library, "curl_slist_append", slistAppend) && Find(library, "curl_slist_free_all", slistFreeAll) &&
        Find(library, "curl_multi_init", multiInit) && Find(library, "curl_multi_add_handle", multiAddHandle) &&
        Find(library, "curl_multi_remove_handle", multiRemoveHandle) &&
        Find(library, "curl_multi_perform", multiPerform) && Find(library, "curl_multi_poll", multiPoll) &&
        Find(library, "curl_multi_wakeup", multiWakeup) && Find(library, "curl_multi_info_read", multiInfoRead) &&
        Find(library, "curl_multi_cleanup", multiCleanup);
    if (!isWhole) {
        const char* const why = dlerror();
        problem = why ? why : std::string(kLibrary) + " lacks a function";
        return false;
    }
    if (globalInit(CURL_GLOBAL_DEFAULT) == CURLE_OK) return true;
    problem = std::string(kLibrary) + " does not start";
    return false;
}

}  // namespace OrvaneOtlp
