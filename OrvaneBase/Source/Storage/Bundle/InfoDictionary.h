// The manifest that ships inside the application.
#ifndef ORVANE_STORAGE_BUNDLE_INFO_DICTIONARY_H
#define ORVANE_STORAGE_BUNDLE_INFO_DICTIONARY_H

#include "Base/Seam.h"
#include "Storage/Bundle/InfoValue.h"

namespace Quern {

// Any thread. Must not log: the log reads its own settings here.
class InfoDictionary : public Seam<InfoDictionary> {
public:
    // A dictionary, empty where there is no manifest. Valid and unchanged for the life of the process.
    virtual const InfoValue& Root() = 0;

    // Sets the file that the built-in reads. It reads once, at the first need: false if that has been.
    static bool SetPath(const char* path);
};

template <>
std::shared_ptr<InfoDictionary> Seam<InfoDictionary>::MakeBuiltIn();

}  // namespace Quern

#endif
