// The commands. A command runs on the main thread, prints its results, says what keeps it from them, and gives the exit
// status (Output.h). RunWatch is in StateInquiry.cpp, RunRequest in RequestCommand.cpp and RunDownload in
// DownloadCommand.cpp; the others, which ask and print inquiries, are in Diagnosis.cpp.
#ifndef ORVANE_TOOLS_NET_COMMANDS_H
#define ORVANE_TOOLS_NET_COMMANDS_H

#include "Net/Arguments.h"

namespace OrvaneNet {

int RunState(const Arguments& arguments);
int RunWatch(const Arguments& arguments);  // state --watch
int RunPing(const Arguments& arguments);
int RunTraceroute(const Arguments& arguments);
int RunLookup(const Arguments& arguments);
int RunRequest(const Arguments& arguments);  // get and post
int RunDownload(const Arguments& arguments);
int RunDiagnose(const Arguments& arguments);

}  // namespace OrvaneNet

#endif
