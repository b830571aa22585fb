// A base for classes of which the process has one object, made at the first use and never released.
#ifndef ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_SINGLETON_H
#define ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_SINGLETON_H

#include <atomic>

#include "Base/MakeOnce.h"

namespace Orvane::Plugin {

// The object is never deleted, so whoever holds it may call it until the process ends, quit callbacks included. T says
// which of its own operations may be called on which thread.
template <typename T>
class Singleton {
public:
    virtual ~Singleton() = default;

    // Any thread. Of two objects made at once one is deleted again: T's constructor and destructor have no effect. Nor
    // may T's constructor ask for the object: it would find none yet and make another one, without end.
    static T* GetInstance() {
        return Quern::MakeOnce(m_pInstance, [] { return new T; });
    }

private:
    static std::atomic<T*> m_pInstance;  // null until the first use; set once
};

template <typename T>
std::atomic<T*> Singleton<T>::m_pInstance{nullptr};

}  // namespace Orvane::Plugin

#endif
