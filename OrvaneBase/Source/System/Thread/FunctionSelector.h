// A stored call: a target with a member, or a function, and up to three arguments.
#ifndef ORVANE_SYSTEM_THREAD_FUNCTION_SELECTOR_H
#define ORVANE_SYSTEM_THREAD_FUNCTION_SELECTOR_H

#include <type_traits>

namespace Quern {

class CTargetBase;

// A plain value; owns nothing. Whoever made the target sees to it that it lives when the call is performed.
struct CAFunctionSelector {
    // Not defaulted: the compiler would zero the whole by a string instruction, which takes as long as posting a call.
    CAFunctionSelector() {}  // NOLINT(modernize-use-equals-default)

    CTargetBase* target = nullptr;  // null for a function
    void (CTargetBase::*member0)() = nullptr;
    void (CTargetBase::*member1)(void*) = nullptr;
    void (CTargetBase::*member2)(void*, void*) = nullptr;
    void (CTargetBase::*member3)(void*, void*, void*) = nullptr;
    void (*function0)() = nullptr;
    void (*function1)(void*) = nullptr;
    void (*function2)(void*, void*) = nullptr;
    void (*function3)(void*, void*, void*) = nullptr;
    void* arguments[3] = {};

    void Set(CTargetBase* object, void (CTargetBase::*member)());
    void Set(CTargetBase* object, void (CTargetBase::*member)(void*), void* a);
    void Set(CTargetBase* object, void (CTargetBase::*member)(void*, void*), void* a, void* b);

    // With a target, calls the first member that is set, those with fewer arguments first. Without a target or a
    // member, the first function by the same rule. Without that, does nothing.
    void Perform() const;
};

static_assert(std::is_trivially_copyable_v<CAFunctionSelector>, "queues copy it byte by byte");

}  // namespace Quern

#endif
