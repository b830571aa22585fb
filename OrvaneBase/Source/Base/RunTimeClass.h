// How the library enters its own classes in the run time's table.
#ifndef ORVANE_BASE_RUN_TIME_CLASS_H
#define ORVANE_BASE_RUN_TIME_CLASS_H

#include <vector>

#include "Orvane/RunTime.h"

namespace Quern {

struct RunTimeMethod {
    const char* selector;
    orvane_implementation code;
};

// Makes a class with these methods and enters it under its name. Where the name is taken, the process holds a second
// copy of the library: the first one stays in force, and the class made here is found by nobody.
orvane_class* RegisterRunTimeClass(const char* name, const std::vector<RunTimeMethod>& instanceMethods,
                                   const std::vector<RunTimeMethod>& classMethods = {});

}  // namespace Quern

#endif
