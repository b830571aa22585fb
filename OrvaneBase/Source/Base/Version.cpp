#include "Orvane/OrvaneCore.h"

// ORVANE_VERSION and ORVANE_SOURCE_REVISION come from the build.

const char* orvanecore_get_version() {
    return ORVANE_VERSION;
}

const char* orvanecore_get_version_hash() {
    return ORVANE_SOURCE_REVISION;
}

const char* orvanecore_get_orvane_version_string() {
    return "ORVANE_VERSION_ORVANECORE_" ORVANE_VERSION;
}

const double OrvaneCoreVersionNumber = 1.0;
const unsigned char OrvaneCoreVersionString[] = "@(#)PROGRAM:OrvaneCore  PROJECT:OrvaneCore-1\n";
