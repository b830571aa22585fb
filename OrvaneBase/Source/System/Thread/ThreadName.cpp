#include "System/Thread/ThreadName.h"

#include <pthread.h>

#include <string>

namespace Quern {
namespace {

constexpr size_t kKernelNameLength = 15;  // the kernel refuses a longer name instead of cutting it

std::string& FullName() {
    static thread_local std::string name;
    return name;
}

}  // namespace

void set_thread_name(const char* name) {
    if (!name) return;
    FullName() = name;
    pthread_setname_np(pthread_self(), FullName().substr(0, kKernelNameLength).c_str());
}

const char* get_thread_name() {
    return FullName().c_str();
}

}  // namespace Quern
