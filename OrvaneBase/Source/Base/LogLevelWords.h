// The words for the levels of log lines, as lines and settings have them.
#ifndef ORVANE_BASE_LOG_LEVEL_WORDS_H
#define ORVANE_BASE_LOG_LEVEL_WORDS_H

namespace Quern {

// By ALogPriority. The last one is a threshold's alone: no line has it.
inline constexpr const char* kLogLevelWords[] = {"Debug", "Info", "Warning", "Event", "Error", "None"};

}  // namespace Quern

#endif
