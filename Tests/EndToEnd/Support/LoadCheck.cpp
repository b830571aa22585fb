#include "Support/LoadCheck.h"

#include "Host/LoadLine.h"
#include "Support/Container.h"
#include "Support/Test.h"

namespace EndToEnd {

bool ParseLoadLine(const std::string& text, unsigned& thread, uint64_t& sequence) {
    unsigned long long number = 0;
    if (sscanf(text.c_str(), "load %u %llu ", &thread, &number) != 2) return false;
    sequence = number;
    return true;
}

std::map<unsigned, std::vector<uint64_t>> LoadLinesOf(const std::vector<std::string>& log) {
    std::map<unsigned, std::vector<uint64_t>> lines;
    for (const std::string& line : log) {
        const std::string text = TextOfLogLine(line);
        unsigned thread = 0;
        uint64_t sequence = 0;
        if (!ParseLoadLine(text, thread, sequence)) continue;
        lines[text == OrvaneHost::LoadLine(thread, sequence) ? thread : kDamaged].push_back(sequence);
    }
    return lines;
}

uint64_t CountLines(const std::string& acknowledged) {
    return static_cast<uint64_t>(std::count(acknowledged.begin(), acknowledged.end(), '\n'));
}

}  // namespace EndToEnd
