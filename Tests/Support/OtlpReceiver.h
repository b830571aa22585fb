// A receiver of OTLP over HTTP that takes what it is sent apart, and notes all that is not of the published shape.
#ifndef ORVANE_TESTS_SUPPORT_OTLP_RECEIVER_H
#define ORVANE_TESTS_SUPPORT_OTLP_RECEIVER_H

#include <json/json.h>

#include "Support/HttpServer.h"
#include "Support/Test.h"

namespace OrvaneTest {

// A span or a log record.
struct OtlpRecord {
    Json::Value json;
    std::string scope;
    std::map<std::string, std::string> attributes;  // those of its resource too; numbers in decimal digits
};

class OtlpReceiver {
public:
    // Answers a request; an empty text closes the connection, "200" takes the records with an empty answer. Any thread.
    using Behaviour = std::function<std::string(const HttpRequest& request)>;

    explicit OtlpReceiver(Behaviour behaviour = [](const HttpRequest&) { return "200"; });

    std::string Url(const std::string& target = "") const { return _server.Url(target); }
    std::vector<HttpRequest> Requests() const { return _server.Requests(); }
    // Spans and log records of all requests that were answered with "200", in order.
    std::vector<OtlpRecord> Records() const;
    // What differs from the published shape; empty if nothing does.
    std::string Problems() const;

private:
    std::string Answer(const HttpRequest& request);
    void Take(const std::string& body);
    void Check(const Json::Value& value, const std::string& path);

    const Behaviour _behaviour;
    mutable std::mutex _mutex;
    std::vector<OtlpRecord> _records;
    std::string _problems;
    HttpServer _server;  // last: its threads use the others
};

}  // namespace OrvaneTest

#endif
