#include <algorithm>
#include <vector>

#include "Orvane/OrvaneCore.h"

namespace {

using QuitCallback = void (*)();

// Made at the first need. Not locked: entries come from constructors of singletons, and the run happens on the thread
// that takes the library down.
std::vector<QuitCallback>* g_quitCallbacks = nullptr;

}  // namespace

void AddApplicationQuitCallback(QuitCallback callback) {
    if (!callback) return;
    if (!g_quitCallbacks) g_quitCallbacks = new std::vector<QuitCallback>;
    auto& list = *g_quitCallbacks;
    if (std::find(list.begin(), list.end(), callback) == list.end()) list.push_back(callback);
}

void OnApplicationQuit() {
    // By index, looking at the list anew each time: a callback may enter another one.
    for (size_t i = 0; g_quitCallbacks && i < g_quitCallbacks->size(); ++i)
        (*g_quitCallbacks)[i]();
    delete g_quitCallbacks;
    g_quitCallbacks = nullptr;
}
