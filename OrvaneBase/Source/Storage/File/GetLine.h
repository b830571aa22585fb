// Reading a text file by lines.
#ifndef ORVANE_STORAGE_FILE_GET_LINE_H
#define ORVANE_STORAGE_FILE_GET_LINE_H

#include <cstdio>

#include "Base/Container/AString.h"

namespace Quern {

// Reads up to a carriage return or a line feed, which it takes but does not give, and gives the line's length. A pair
// of the two thus ends one line and then an empty one. At the end of the file it gives -1 and leaves `line` as it is,
// even if bytes without a line end were read: those are lost. REQUIRES: `file` is open for reading and not null.
int getline(FILE* file, AString& line);

}  // namespace Quern

#endif
