#include "System/Application/MainRunLoopClass.h"

#include <cstdint>

#include "Orvane/RunTime.h"
#include "System/Application/MainRunLoop.h"

namespace Quern {
namespace {

constexpr char kClassName[] = "OrvaneMainRunLoop";

void* Result(intptr_t value) {
    return reinterpret_cast<void*>(value);
}

void* PerformRun(orvane_object*, const char*, void* const*) {
    return Result(MainRunLoop::Current().Run());
}

void* PerformStop(orvane_object*, const char*, void* const*) {
    MainRunLoop::Current().Stop();
    return nullptr;
}

void* PerformDescriptor(orvane_object*, const char*, void* const*) {
    return Result(MainRunLoop::Current().Descriptor());
}

void* PerformRunPending(orvane_object*, const char*, void* const*) {
    MainRunLoop::Current().RunPending();
    return nullptr;
}

[[maybe_unused]] const bool g_registered = (RegisterMainRunLoopClass(), true);

}  // namespace

void RegisterMainRunLoopClass() {
    if (orvane_class_lookup(kClassName)) return;
    orvane_class* const cls = orvane_class_allocate(kClassName);
    orvane_class_add_class_method(cls, "run", PerformRun);
    orvane_class_add_class_method(cls, "stop", PerformStop);
    orvane_class_add_class_method(cls, "descriptor", PerformDescriptor);
    orvane_class_add_class_method(cls, "runPending", PerformRunPending);
    orvane_class_register(cls);
}

}  // namespace Quern
