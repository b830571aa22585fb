/// \file IBase.h
/// The root of the base library, for a host that takes the library down. C++11.
#ifndef ORVANE_I_BASE_H
#define ORVANE_I_BASE_H

#include "Orvane/Export.h"

namespace Quern {

class IBase {
public:
    virtual ~IBase();

    /// Takes the base library down: runs the quit callbacks, ends the main-thread pump and gives the common state back.
    /// Nothing calls this by itself. On the thread that takes the process down, with the library's work at rest.
    ORVANE_EXPORT static void Release();

    /// Makes sure that the root exists. Inside the library only.
    static IBase* GetInstance();

private:
    IBase() {}

    static IBase* s_pInstance;
};

}  // namespace Quern

#endif
