#include "System/Selector/PerformObject.h"

#include "System/Selector/PerformSelector.h"

namespace Quern {

void PerformObject::perform() const {
    if (sel)
        sel->Perform();
    else
        GetMainSelectorManger()->Update();
}

}  // namespace Quern
