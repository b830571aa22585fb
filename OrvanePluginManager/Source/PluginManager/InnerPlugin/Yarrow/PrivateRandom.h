// The C library's random numbers, from a state that nobody else seeds or reads.
#ifndef ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_YARROW_PRIVATE_RANDOM_H
#define ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_YARROW_PRIVATE_RANDOM_H

#include <cstdint>
#include <cstdlib>

namespace Orvane::Plugin {

// What random() gives, of 31 bits. The process's own random() shares its state with srand here, which the process may
// call with the time at any moment: all who read it within a second would then read the same. One thread at a time.
class PrivateRandom {
public:
    // From the system's entropy, so that devices which start in the same second differ; where there is none, from the
    // clock in microseconds.
    PrivateRandom();
    // No copies: one would go on in the other's state.
    PrivateRandom(const PrivateRandom&) = delete;
    PrivateRandom& operator=(const PrivateRandom&) = delete;

    int32_t Next();

private:
    char _state[128];
    random_data _data{};  // points into _state
};

}  // namespace Orvane::Plugin

#endif
