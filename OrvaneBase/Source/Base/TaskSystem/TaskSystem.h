// The start of the task system, a product of its own that may or may not be in the process.
#ifndef ORVANE_BASE_TASK_SYSTEM_TASK_SYSTEM_H
#define ORVANE_BASE_TASK_SYSTEM_TASK_SYSTEM_H

#include <atomic>

namespace Orvane {

// Knows the product by name alone: the run-time class that Orvane/TransceiverHelper.h describes.
class TaskSystem {
public:
    // Made at the first call; never destroyed. Any thread.
    static TaskSystem* GetInstance();

    // Tells the class who the user is and where to connect, then starts it; both on the caller's thread. Says in the
    // log what is missing, and stops there.
    void Start();

private:
    TaskSystem() = default;

    static std::atomic<TaskSystem*> s_pInstance;
};

}  // namespace Orvane

#endif
