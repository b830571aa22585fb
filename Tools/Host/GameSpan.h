// A span of the game's, traced by the plain functions that a script layer would call.
#ifndef ORVANE_TOOLS_HOST_GAME_SPAN_H
#define ORVANE_TOOLS_HOST_GAME_SPAN_H

#include <string>

namespace OrvaneHost {

// Traces a span from its start to its end, and says its text and its trace on the console, or that there is no tracing.
// `words` are its name and its tags, as KEY=VALUE; a word that is no tag is told and left out. Any thread.
void TraceSpan(const std::string& words);

}  // namespace OrvaneHost

#endif
