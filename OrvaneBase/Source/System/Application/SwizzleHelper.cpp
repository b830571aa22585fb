#include "System/Application/SwizzleHelper.h"

namespace Orvane {

bool SwizzleHelper::originalClass_swizzledClass_originalSelector_swizzleSelector(orvane_class* originalClass,
                                                                                 const orvane_class* swizzledClass,
                                                                                 const char* originalSelector,
                                                                                 const char* swizzleSelector) {
    if (!originalClass) return false;
    const orvane_implementation code = orvane_class_get_method(swizzledClass, swizzleSelector);
    if (!orvane_class_add_method(originalClass, swizzleSelector, code)) return false;
    orvane_class_exchange_methods(originalClass, originalSelector, swizzleSelector);
    return true;
}

bool SwizzleHelper::AddMethodForClass_swizzledClass_selector(orvane_class* cls, const orvane_class* swizzledClass,
                                                             const char* selector) {
    // The class itself is asked here, not its instances. A method that the instances have is kept by the adding, which
    // replaces nothing.
    if (!cls || orvane_class_get_class_method(cls, selector)) return false;
    return orvane_class_add_method(cls, selector, orvane_class_get_method(swizzledClass, selector));
}

}  // namespace Orvane
