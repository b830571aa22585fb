#include "PluginManager/InnerPlugin/Yarrow/PrivateRandom.h"

#include <unistd.h>

#include "System/Thread/Time.h"

namespace Orvane::Plugin {

PrivateRandom::PrivateRandom() {
    unsigned int seed;
    if (getentropy(&seed, sizeof seed) != 0) seed = static_cast<unsigned int>(Quern::CTime::GetTimeTick());
    // 128 bytes of state make it the generator that random() uses too; fewer would give a shorter period.
    initstate_r(seed, _state, sizeof _state, &_data);
}

int32_t PrivateRandom::Next() {
    int32_t number;
    random_r(&_data, &number);
    return number;
}

}  // namespace Orvane::Plugin
