// A base for classes of which the process has one object, made at the first use and never released.
#ifndef ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_SINGLETON_H
#define ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_SINGLETON_H

namespace Orvane::Plugin {

template <typename T>
class Singleton {
public:
    virtual ~Singleton() = default;

    // Not locked: the first use is on the main thread, during start-up.
    static T* GetInstance() {
        if (!m_pInstance) m_pInstance = new T;
        return m_pInstance;
    }

private:
    static T* m_pInstance;
};

template <typename T>
T* Singleton<T>::m_pInstance = nullptr;

}  // namespace Orvane::Plugin

#endif
