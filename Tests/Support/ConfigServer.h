// The server on the desk, in this process and over real HTTP. It is strict: Problems must stay empty.
#ifndef ORVANE_TESTS_SUPPORT_CONFIG_SERVER_H
#define ORVANE_TESTS_SUPPORT_CONFIG_SERVER_H

#include <json/json.h>

#include "DevServer/DevServer.h"
#include "DevServer/JsonText.h"
#include "Support/HttpServer.h"
#include "Support/Test.h"

namespace OrvaneTest {

class ConfigServer {
public:
    ConfigServer() {
        std::string error;
        EXPECT_TRUE(_server.Open(error)) << error;
    }
    ~ConfigServer() { _server.Stop(); }

    int Port() const { return _http.Port(); }
    std::string Url() const { return _http.Url(""); }
    // The module's keys from now on.
    void Serve(const std::string& module, const std::string& json) {
        _folder.Write("served/modules/" + module + ".json", json);
    }
    // What the next request gets in place of the right answer ("500", "hold", ..).
    void OrderNext(const std::string& what) { Control("faults", "config:+1:" + what); }
    // Faults of any protocol, one a line, in place of all that were ordered before.
    void Order(const std::string& faults) {
        Control("faults", "", "DELETE");
        if (!faults.empty()) Control("faults", faults);
    }
    // Where it keeps everything.
    std::string Folder() const { return _folder / "served"; }
    void Release() { Control("release", ""); }
    // How many requests have come.
    size_t Asked() const { return _http.Requests().size(); }
    // What the requests that were answered broke.
    std::string Problems() const {
        std::string problems, error;
        std::ifstream journal(_folder / "served/journal.jsonl");
        for (std::string text; std::getline(journal, text);) {
            Json::Value line;
            if (OrvaneDevServer::ReadStrictly(text, line, error) && line["kind"] != "modules" &&
                !line["problems"].empty())
                problems += OrvaneDevServer::WriteCompact(line);
        }
        return problems;
    }

private:
    OrvaneDevServer::ServerOptions Options() const {
        OrvaneDevServer::ServerOptions options;
        options.folder = _folder / "served";
        options.isStrict = true;
        return options;
    }
    void Control(const std::string& path, const std::string& body, const std::string& method = "POST") {
        OrvaneDevServer::Request order{method, "/_orvane/" + path, "HTTP/1.1", {{"Host", "127.0.0.1"}}, body, {}};
        EXPECT_EQ(_server.Handle(order).status, 200);
    }
    std::string Answer(const HttpRequest& from) {
        OrvaneDevServer::Request request{from.method, from.target, "HTTP/1.1", {}, from.body, {}};
        std::istringstream head(from.head);
        std::string line;
        for (std::getline(head, line); std::getline(head, line);)
            if (const size_t colon = line.find(": "); colon != std::string::npos)
                request.headers.emplace_back(line.substr(0, colon), line.substr(colon + 2, line.size() - colon - 3));
        const OrvaneDevServer::Answer answer = _server.Handle(request);
        std::string headers;
        for (const auto& [name, value] : answer.headers)
            headers += name + ": " + value + "\r\n";
        return HttpAnswer(std::to_string(answer.status) + " -",
                          answer.body + std::string(answer.fillerLength, 'x') + answer.tail, headers);
    }

    const OrvaneTest::TemporaryFolder _folder;
    OrvaneDevServer::DevServer _server{Options()};
    HttpServer _http{[this](const HttpRequest& request) { return Answer(request); }};
};

}  // namespace OrvaneTest

#endif
