/// \file InfoPlist.h
/// How a host says where its manifest is: the property list, XML or binary, with its bundle id, its versions and the
/// settings that ship with it.
///
/// Without a word from the host the library reads the file that the environment names in ORVANE_INFO_PLIST, else the
/// file Info.plist beside the executable. The host does not link to the library for this: the function finds it by the
/// run-time class "OrvaneInfoDictionary". C99 and C++11.
#ifndef ORVANE_INFO_PLIST_H
#define ORVANE_INFO_PLIST_H

#include <stdbool.h>

#include "Orvane/RunTime.h"

/// Sets the file. The library reads it once, at the first need, so this comes before the application's launch and
/// before the first plugin is opened. Any thread.
/// \param path the file's path, copied; null or empty takes back what was set
/// \return true; false without the library, or if it has read its manifest already
ORVANE_RUNTIME_INLINE bool gs_OrvaneSetInfoPlist(const char* path) {
    void* arguments[1];
    arguments[0] = orvane_argument(path);
    return orvane_class_perform(orvane_class_lookup("OrvaneInfoDictionary"), "setPath:", arguments) != NULL;
}

#endif
