// A large file, and the process's end.
#ifndef ORVANE_BENCHMARKS_WWW_DOWNLOADS_H
#define ORVANE_BENCHMARKS_WWW_DOWNLOADS_H

#include "BenchServer.h"

namespace Orvane::Bench {

void MeasureDownload(const BenchServer& server);
// Of this program, run anew with the word "exit" and an address.
void MeasureExit(const BenchServer& server);
int ExitInFlight(const char* url);

}  // namespace Orvane::Bench

#endif
