// A receiver of OTLP over HTTP that takes what it is sent apart, and notes all that is not of the published shape.
#ifndef ORVANE_TESTS_SUPPORT_OTLP_RECEIVER_H
#define ORVANE_TESTS_SUPPORT_OTLP_RECEIVER_H

#include <json/json.h>

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "Support/HttpServer.h"

namespace OrvaneTest {

// A span or a log record that was taken, with what it stood in.
struct OtlpRecord {
    Json::Value json;
    std::string scope;
    std::map<std::string, std::string> attributes;  // numbers in decimal digits
    std::map<std::string, std::string> resource;
};

class OtlpReceiver {
public:
    // Answers a request; an empty text closes the connection, "200" takes the records with an empty answer. Any thread.
    using Behaviour = std::function<std::string(const HttpRequest& request)>;

    explicit OtlpReceiver(Behaviour behaviour = nullptr);

    std::string Url(const std::string& target = "") const { return _server.Url(target); }
    std::vector<HttpRequest> Requests() const { return _server.Requests(); }
    // Of requests that were answered with a 200, in order.
    std::vector<OtlpRecord> Spans() const;
    std::vector<OtlpRecord> Logs() const;
    // What differs from the published shape; empty if nothing does.
    std::string Problems() const;

private:
    std::string Answer(const HttpRequest& request);
    void Take(const HttpRequest& request);
    void TakeRecord(const Json::Value& record, bool isSpan, const OtlpRecord& surroundings);
    std::map<std::string, std::string> TakeAttributes(const Json::Value& list);
    void Check(const Json::Value& object, const std::map<std::string, std::string>& shape, const std::string& what);
    void Problem(const std::string& problem) { _problems += problem + "\n"; }

    const Behaviour _behaviour;
    mutable std::mutex _mutex;
    std::vector<OtlpRecord> _spans, _logs;
    std::string _problems;
    HttpServer _server;  // last: its threads use the others
};

}  // namespace OrvaneTest

#endif
