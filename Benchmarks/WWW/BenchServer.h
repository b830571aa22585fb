// The server of the measurements, a process of its own.
#ifndef ORVANE_BENCHMARKS_WWW_BENCH_SERVER_H
#define ORVANE_BENCHMARKS_WWW_BENCH_SERVER_H

#include <string>

#include "Support/ServerProcess.h"

namespace Orvane::Bench {

// Answers "/SIZE" with that many bytes, and keeps connections. Made before any thread.
class BenchServer {
public:
    BenchServer();
    std::string Url(long long size) const {
        return "http://127.0.0.1:" + std::to_string(_process.Port()) + "/" + std::to_string(size);
    }

private:
    const ServerProcess _process;
};

}  // namespace Orvane::Bench

#endif
