// The server of the measurement, a process of its own: takes uploads and looks at nothing of them.
#ifndef ORVANE_BENCHMARKS_UPLOAD_SINK_SERVER_H
#define ORVANE_BENCHMARKS_UPLOAD_SINK_SERVER_H

#include <string>

#include "Support/ServerProcess.h"

namespace Orvane::Bench {

// Every request's path begins with "/NEXT/PART/": the answer is the position NEXT, and an address with NEXT + PART for
// the next part. Made before any thread.
class SinkServer {
public:
    explicit SinkServer(long long partSize);
    // The address for an upload that begins at 0.
    std::string Url() const;

private:
    const long long _partSize;
    const ServerProcess _process;
};

}  // namespace Orvane::Bench

#endif
