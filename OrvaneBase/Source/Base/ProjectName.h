// The name of the project that the process serves: a leaf, so that files and settings can ask for it without knowing
// what else is common to all.
#ifndef ORVANE_BASE_PROJECT_NAME_H
#define ORVANE_BASE_PROJECT_NAME_H

namespace Quern {

// "Orvane" unless another was set; never null. The text stays valid for the life of the process. Any thread.
const char* ProjectName();
// Takes a copy; null is the empty name. Any thread; of two at a time one wins.
void SetProjectName(const char* name);

}  // namespace Quern

#endif
