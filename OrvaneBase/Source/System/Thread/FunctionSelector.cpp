#include "System/Thread/FunctionSelector.h"

#include "System/Thread/TargetBase.h"

namespace Quern {

// A member of another kind that was set before stays, and Perform takes the one with fewer arguments: a selector is set
// once.
void CAFunctionSelector::Set(CTargetBase* object, void (CTargetBase::*member)()) {
    target = object;
    member0 = member;
}

void CAFunctionSelector::Set(CTargetBase* object, void (CTargetBase::*member)(void*), void* a) {
    target = object;
    member1 = member;
    arguments[0] = a;
}

void CAFunctionSelector::Set(CTargetBase* object, void (CTargetBase::*member)(void*, void*), void* a, void* b) {
    target = object;
    member2 = member;
    arguments[0] = a;
    arguments[1] = b;
}

void CAFunctionSelector::Perform() const {
    if (target) {
        if (member0) return (target->*member0)();
        if (member1) return (target->*member1)(arguments[0]);
        if (member2) return (target->*member2)(arguments[0], arguments[1]);
        if (member3) return (target->*member3)(arguments[0], arguments[1], arguments[2]);
    }
    if (function0) return function0();
    if (function1) return function1(arguments[0]);
    if (function2) return function2(arguments[0], arguments[1]);
    if (function3) return function3(arguments[0], arguments[1], arguments[2]);
}

}  // namespace Quern
