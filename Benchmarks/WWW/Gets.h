// Small requests: one after the other, many at once, and beside what could hold them up.
#ifndef ORVANE_BENCHMARKS_WWW_GETS_H
#define ORVANE_BENCHMARKS_WWW_GETS_H

#include "BenchServer.h"

namespace Orvane::Bench {

void MeasureGets(const BenchServer& server);
// 8 names that no name server answers, in flight beside 64 requests. `isMute`: whether there is such a name server.
void MeasureBesideHungLookups(const BenchServer& server, bool isMute);
// A listener that takes 100 ms, beside 20 requests of other tasks, as the server sees them come.
void MeasureBesideSlowListener(const BenchServer& server);

}  // namespace Orvane::Bench

#endif
