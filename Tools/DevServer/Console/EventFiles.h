// The events that games on this desk report.
//
//     FOLDER/events/NAME.jsonl    what the sample data plugin appends to, if PELL_EVENTS names the file
//
// An event is a line {"event":"..","source":N,"fields":[{"key":KEY,"text":".."},..]}. That of a finished span bears the
// name "YarrowClient".
#ifndef ORVANE_TOOLS_DEVSERVER_CONSOLE_EVENT_FILES_H
#define ORVANE_TOOLS_DEVSERVER_CONSOLE_EVENT_FILES_H

#include <json/json.h>

#include <string>

namespace OrvaneDevServer {

constexpr char kSpanEvent[] = "YarrowClient";

// {"files":[NAME,..],"events":[{"file","number","event","source","fields"},..],"cut":BOOL,"broken":N}: the newest of
// each file, in their order, or of all of them only those with that name. "cut" where there were more before them;
// "broken" counts lines that are no event. Any thread.
Json::Value ReadEvents(const std::string& folder, const std::string& name = "");

}  // namespace OrvaneDevServer

#endif
