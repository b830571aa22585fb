#include "Base/ProjectName.h"

#include "Base/KeptText.h"

namespace Quern {
namespace {

// Ready before any code runs: initialisers ask for the name, and set it.
constinit KeptText g_name;

}  // namespace

const char* ProjectName() {
    return g_name.IsSet() ? g_name.Get() : "Orvane";
}

void SetProjectName(const char* name) {
    g_name.Set(name);
}

}  // namespace Quern
