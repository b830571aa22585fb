// What the tool says: results on standard output, everything else on standard error.
#ifndef ORVANE_TOOLS_NET_OUTPUT_H
#define ORVANE_TOOLS_NET_OUTPUT_H

#include <json/json.h>

#include <string>
#include <string_view>

#include "Support/PrintableText.h"

namespace OrvaneNet {

// Exit statuses, part of the command's interface; the help text tells when each applies.
enum ExitStatus { kDone = 0, kNoAnswer = 1, kWrongUse = 2 };

// The library logs to standard error until a game starts its log: this sends those lines nowhere, and keeps a way to
// the true standard error for Say. Before any other thread runs.
void HideLibraryLines();

// A line to the user, "orvane-net: " in front.
void Say(const std::string& text);
// The same as it stands: without a newline, for a line that is drawn over.
void Draw(const std::string& text);
// Whether standard error is a terminal, so that a line can be drawn over.
bool CanDraw();

// To standard output, with a newline if there is none.
void Print(std::string_view text);
// The object; on one line if `isCompact`.
void PrintJson(const Json::Value& value, bool isCompact = false);

using OrvaneTools::PrintableText;

}  // namespace OrvaneNet

#endif
