// What a tool says of an option that it does not take.
#ifndef ORVANE_TOOLS_SUPPORT_OPTION_ERROR_H
#define ORVANE_TOOLS_SUPPORT_OPTION_ERROR_H

#include <string>

namespace OrvaneTools {

// Names the option that getopt_long has just returned '?' or ':' for, as it was written, and what is wrong with it.
// `words` is what getopt_long was given. REQUIRES: the tool's short options begin with ':', and `opterr` is 0.
std::string OptionError(int found, char* const* words);

}  // namespace OrvaneTools

#endif
