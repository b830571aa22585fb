#include "Base/RunTimeClass.h"

namespace Quern {

orvane_class* RegisterRunTimeClass(const char* name, const std::vector<RunTimeMethod>& instanceMethods,
                                   const std::vector<RunTimeMethod>& classMethods) {
    orvane_class* cls = orvane_class_allocate(name);
    for (const RunTimeMethod& method : instanceMethods)
        orvane_class_add_method(cls, method.selector, method.code);
    for (const RunTimeMethod& method : classMethods)
        orvane_class_add_class_method(cls, method.selector, method.code);
    orvane_class_register(cls);  // last, so that whoever finds the class finds it whole
    return cls;
}

}  // namespace Quern
