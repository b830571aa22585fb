// Attaches methods of one run-time class to another.
#ifndef ORVANE_SYSTEM_APPLICATION_SWIZZLE_HELPER_H
#define ORVANE_SYSTEM_APPLICATION_SWIZZLE_HELPER_H

#include "Orvane/RunTime.h"

namespace Orvane {

class SwizzleHelper {
public:
    // Adds the swizzled class's method to the original class under the swizzle selector, then exchanges its code with
    // that of the original selector. Without a method under the original selector nothing is exchanged, and the added
    // one is reached by nobody. Returns false, with nothing changed, for a null class and for one that has a method
    // under the swizzle selector already.
    static bool originalClass_swizzledClass_originalSelector_swizzleSelector(orvane_class* originalClass,
                                                                             const orvane_class* swizzledClass,
                                                                             const char* originalSelector,
                                                                             const char* swizzleSelector);

    // Adds the swizzled class's method, unless the class has one of its own. Returns whether it was added; false for a
    // null class, and for one that responds to the selector itself, as a class.
    static bool AddMethodForClass_swizzledClass_selector(orvane_class* cls, const orvane_class* swizzledClass,
                                                         const char* selector);
};

}  // namespace Orvane

#endif
