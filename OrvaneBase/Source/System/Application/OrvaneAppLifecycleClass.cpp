// The lifecycle object as other libraries and hosts reach it: by the names of run-time classes.
#include "Base/RunTimeClass.h"
#include "System/Application/OrvaneAppLifecycle.h"

namespace Orvane {
namespace {

void* AddObserver(orvane_object*, const char*, void* const* arguments) {
    if (arguments) OrvaneAppLifecycle::sharedInstance()->addObserver(static_cast<orvane_object*>(arguments[0]));
    return nullptr;
}

void* RemoveObserver(orvane_object*, const char*, void* const* arguments) {
    if (arguments) OrvaneAppLifecycle::sharedInstance()->removeObserver(static_cast<orvane_object*>(arguments[0]));
    return nullptr;
}

void* HasExtraSupportWindowImplementation(orvane_object*, const char*, void* const*) {
    const bool has = OrvaneAppLifecycle::sharedInstance()->hasExtraSupportWindowImplementation();
    return reinterpret_cast<void*>(static_cast<uintptr_t>(has));
}

void* DeliverEvent(orvane_object*, const char* selector, void* const* arguments) {
    const AppEventDescription* description = FindAppEvent(selector);
    return description ? OrvaneAppLifecycle::sharedInstance()->Deliver(description->event, arguments) : nullptr;
}

void* SharedInstance(orvane_object*, const char*, void* const*) {
    static orvane_object shared = {orvane_class_lookup("OrvaneAppLifecycle"), nullptr};
    return &shared;
}

}  // namespace

}  // namespace Orvane

void Quern::RegisterAppLifecycleClasses() {
    using namespace Orvane;
    std::vector<RunTimeMethod> methods = {
        {"addObserver:", AddObserver},
        {"removeObserver:", RemoveObserver},
        {"hasExtraSupportWindowImplementation", HasExtraSupportWindowImplementation},
    };
    for (const AppEventDescription& description : kAppEvents)
        methods.push_back({description.selector, DeliverEvent});
    RegisterRunTimeClass("OrvaneAppLifecycle", methods, {{"sharedInstance", SharedInstance}});
    RegisterRunTimeClass("OrvaneAppLifecycleWrapper",
                         {{"addObserver:", AddObserver}, {"removeObserver:", RemoveObserver}});
}
