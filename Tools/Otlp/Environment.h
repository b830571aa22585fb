// The settings of a sender, from the environment variables that OpenTelemetry defines for all its senders.
#ifndef ORVANE_TOOLS_OTLP_ENVIRONMENT_H
#define ORVANE_TOOLS_OTLP_ENVIRONMENT_H

#include <functional>
#include <string>
#include <vector>

#include "Otlp/Signals.h"

namespace OrvaneOtlp {

// Where the records of one signal go.
struct Endpoint {
    std::string url;                   // empty: they go nowhere
    std::vector<std::string> headers;  // lines "Name: value" for each request
    long timeout = 10000;              // milliseconds that a request may take; 0 for no limit
    bool isCompressed = false;         // requests go with gzip
    std::string certificate;           // a PEM file of those that the receiver is checked with; empty: the system's

    bool IsSet() const { return !url.empty(); }
};

struct Settings {
    Endpoint traces;
    Endpoint logs;
    Attributes resource;                // of whom the records tell
    std::vector<std::string> problems;  // what was set and makes no sense; such a variable counts as not set
};

// Gives the value of a variable, or null.
using Variables = std::function<const char*(const char* name)>;

// OTEL_EXPORTER_OTLP_ENDPOINT, _HEADERS, _TIMEOUT, _COMPRESSION, _CERTIFICATE, each with a variant for one signal that
// goes before it (OTEL_EXPORTER_OTLP_TRACES_ENDPOINT), OTEL_SERVICE_NAME, OTEL_RESOURCE_ATTRIBUTES, OTEL_SDK_DISABLED.
// An empty variable counts as not set. `base`, if it is not empty, takes the place of all variables of endpoints. The
// variables are read during the call alone.
Settings ReadEnvironment(const Variables& variables, const std::string& base = std::string());
// Those of the process.
Settings ReadEnvironment(const std::string& base = std::string());

// The address as it may be shown: without user, password and query.
std::string ShownUrl(const std::string& url);

}  // namespace OrvaneOtlp

#endif
