// The manifest's entry in the process's table of run-time classes; its reader is Orvane/InfoPlist.h.
#ifndef ORVANE_STORAGE_BUNDLE_INFO_DICTIONARY_CLASS_H
#define ORVANE_STORAGE_BUNDLE_INFO_DICTIONARY_CLASS_H

namespace Quern {

// Registers the class "OrvaneInfoDictionary" with the class method "setPath:". Called once, while the library loads.
void RegisterInfoDictionaryClass();

}  // namespace Quern

#endif
