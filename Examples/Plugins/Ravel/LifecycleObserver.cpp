#include "LifecycleObserver.h"

#include <stdint.h>
#include <stdlib.h>

#include "Orvane/AppLifecycle.h"

namespace Ravel {
namespace {

void* OnLaunch(orvane_object*, const char*, void* const*) {
    orvane_console_log("RAVEL sees the launch");
    return nullptr;
}

void* OnOrientations(orvane_object* self, const char*, void* const*) {
    return self->data;
}

}  // namespace

void ObserveLifecycle() {
    orvane_class* cls = orvane_class_allocate("PluginRavelLifecycle");
    orvane_class_add_protocol(cls, ORVANE_APP_LIFECYCLE_OBSERVER);
    orvane_class_add_method(cls, "application:didFinishLaunchingWithOptions:", OnLaunch);
    const char* mask = getenv("RAVEL_ORIENTATIONS");
    if (mask && *mask) {
        orvane_class_add_method(cls, "application:supportedInterfaceOrientationsForWindow:", OnOrientations);
    }
    orvane_class_register(cls);

    // The lifecycle does not retain its observers; this one lives as long as the process.
    static orvane_object observer = {cls, nullptr};
    if (mask) observer.data = reinterpret_cast<void*>(static_cast<uintptr_t>(strtoul(mask, nullptr, 0)));
    gs_OrvaneAppLifecycleAddObserver(&observer);
}

}  // namespace Ravel
