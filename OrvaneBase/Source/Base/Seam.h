// The one pattern by which the logic reaches the platform.
//
// A seam is a small abstract class named for a need (ConsoleSink, PathSource, ...). It derives from Seam<itself> and
// says how its built-in is made:
//
//     class PathSource : public Seam<PathSource> { public: virtual std::string Home() = 0; ... };
//     template <> std::shared_ptr<PathSource> Seam<PathSource>::MakeBuiltIn();   // in Linux/PathSource_Linux.cpp
//
// Thread rule: Use belongs to start-up (or a test's set-up); Current may be called from any thread.
#ifndef ORVANE_BASE_SEAM_H
#define ORVANE_BASE_SEAM_H

#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

namespace Quern {

template <typename T>
class Seam {
public:
    virtual ~Seam() = default;

    // The implementation in force; never null. The built-in is made at the first need.
    static T& Current() {
        if (T* current = State().current.load(std::memory_order_acquire)) return *current;
        return *Install(nullptr);
    }

    // Puts an implementation in force; null restores the built-in. An implementation that was ever in force is kept
    // alive for the process, since another thread may be inside it.
    static void Use(std::shared_ptr<T> implementation) { Install(std::move(implementation)); }

private:
    struct SeamState {
        std::mutex lock;
        std::atomic<T*> current{nullptr};
        std::shared_ptr<T> builtIn;
        std::vector<std::shared_ptr<T>> kept;
    };

    static SeamState& State() {
        static SeamState* state = new SeamState;  // never destroyed: threads outlive static destruction
        return *state;
    }

    static T* Install(std::shared_ptr<T> implementation) {
        SeamState& state = State();
        const std::lock_guard<std::mutex> guard(state.lock);
        if (!implementation) {
            if (!state.builtIn) state.builtIn = MakeBuiltIn();
            implementation = state.builtIn;
        } else {
            state.kept.push_back(implementation);
        }
        state.current.store(implementation.get(), std::memory_order_release);
        return implementation.get();
    }

    static std::shared_ptr<T> MakeBuiltIn();
};

}  // namespace Quern

#endif
