// The application's user defaults: small dictionaries by name, which all that runs in the application shares.
#ifndef ORVANE_STORAGE_DEFAULTS_USER_DEFAULTS_H
#define ORVANE_STORAGE_DEFAULTS_USER_DEFAULTS_H

#include <json/forwards.h>

#include <string>

#include "Base/Seam.h"

namespace Quern {

// Any thread. Neither operation waits for the disk to write: what is set is readable at once and stored soon after, on
// a thread of the platform's own. A process that ends meanwhile leaves what was stored before.
class UserDefaults : public Seam<UserDefaults> {
public:
    // What is stored under the key, if it is a dictionary; else an empty one.
    virtual Json::Value Dictionary(const std::string& key) = 0;
    // Stores a dictionary in place of whatever the key has. One that is stored already costs nothing.
    virtual void SetDictionary(const std::string& key, const Json::Value& dictionary) = 0;
};

template <>
std::shared_ptr<UserDefaults> Seam<UserDefaults>::MakeBuiltIn();

}  // namespace Quern

#endif
