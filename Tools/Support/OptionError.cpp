#include "Support/OptionError.h"

#include <getopt.h>

namespace OrvaneTools {

std::string OptionError(int found, char* const* words) {
    constexpr int kLargestLetter = 255;  // an option without one has a larger number
    // A letter may stand in the middle of a word, "-qx"; a long option is always the word in front.
    const std::string word = words[optind - 1];
    const bool isLetter = optopt > 0 && optopt <= kLargestLetter && !word.starts_with("--");
    const std::string name = isLetter ? std::string("-") + static_cast<char>(optopt) : word;
    if (found == ':') return name + ": wants a value; see --help";
    if (!isLetter && optopt != 0) return name + ": takes no value; see --help";
    return name + ": no such option; see --help";
}

}  // namespace OrvaneTools
