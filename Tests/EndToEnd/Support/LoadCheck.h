// What a log holds of the numbered lines of a load.
#ifndef ORVANE_TESTS_END_TO_END_LOAD_CHECK_H
#define ORVANE_TESTS_END_TO_END_LOAD_CHECK_H

#include "Support/Test.h"

namespace EndToEnd {

// Takes "load <thread> <number> ..." apart. False for another text.
bool ParseLoadLine(const std::string& text, unsigned& thread, uint64_t& sequence);

// Thread to the numbers of its lines, in the order of the log. A line that is not byte for byte what was logged counts
// as thread kDamaged.
constexpr unsigned kDamaged = ~0u;
std::map<unsigned, std::vector<uint64_t>> LoadLinesOf(const std::vector<std::string>& log);

// How many lines were acknowledged.
uint64_t CountLines(const std::string& acknowledged);

}  // namespace EndToEnd

#endif
