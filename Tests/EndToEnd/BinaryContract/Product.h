// The product as a process meets it that shares neither header nor symbol with it.
#ifndef ORVANE_TESTS_BINARY_CONTRACT_PRODUCT_H
#define ORVANE_TESTS_BINARY_CONTRACT_PRODUCT_H

#include <dlfcn.h>

#include "Contract.h"
#include "Orvane/RunTime.h"
#include "Support/Test.h"

namespace Contract {

inline void* Load(const char* path) {
    void* library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (!library) ADD_FAILURE() << dlerror();
    return library;
}

template <typename Function>
Function Symbol(void* library, const char* name) {
    return reinterpret_cast<Function>(dlsym(library, name));
}

inline void* Perform(orvane_object* object, const char* selector, void* argument = nullptr) {
    void* const arguments[] = {argument, nullptr};
    return orvane_object_perform(object, selector, arguments);
}

// What a class gives of itself.
template <typename Object>
Object* Get(const char* className, const char* selector) {
    return static_cast<Object*>(orvane_class_perform(orvane_class_lookup(className), selector, nullptr));
}

inline Host* FindHost() {
    orvane_object* wrapper = orvane_object_create(orvane_class_lookup("PluginUtilsWrapper"));
    auto* host = static_cast<Host*>(Perform(wrapper, "getNativePluginManager"));
    orvane_object_release(wrapper);
    return host;
}

// As the platform's launch callback does it.
inline void Launch() {
    Perform(Get<orvane_object>("OrvaneAppLifecycle", "sharedInstance"), "application:didFinishLaunchingWithOptions:");
}

// The application's container, for the log that the launch starts.
class Container {
public:
    Container() {
        setenv("ORVANE_HOME", home.c_str(), 1);
        // Without this, the C library reads the zone anew at each conversion, under a lock that the thread sanitizer
        // does not see.
        setenv("TZ", "UTC", 1);
    }
    const OrvaneTest::TemporaryFolder folder;
    const std::string& home = folder.Path();
};

}  // namespace Contract

#endif
