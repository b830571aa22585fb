// The main run loop as a host drives it: by the name of a run-time class, so that nothing more is exported.
#include <cstdint>

#include "Base/RunTimeClass.h"
#include "System/Application/MainRunLoop.h"

namespace Quern {
namespace {

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

}  // namespace

void RegisterMainRunLoopClass() {
    RegisterRunTimeClass("OrvaneMainRunLoop", {},
                         {{"run", PerformRun},
                          {"stop", PerformStop},
                          {"descriptor", PerformDescriptor},
                          {"runPending", PerformRunPending}});
}

}  // namespace Quern
