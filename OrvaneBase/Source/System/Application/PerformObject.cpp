#include "System/Application/PerformObject.h"

#include "System/Application/PerformSelector.h"

namespace Quern {

void PerformObject::perform() const {
    if (sel)
        sel->Perform();
    else
        GetMainSelectorManger()->Update();
}

}  // namespace Quern
