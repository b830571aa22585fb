#include "DevServer/FaultyAnswer.h"

#include <algorithm>

#include "DevServer/ConfigProtocol.h"
#include "DevServer/HostileJson.h"
#include "DevServer/TraceIdProtocol.h"

namespace OrvaneDevServer {
namespace {

void SetBody(Answer& answer, const std::string& body) {
    answer.body = body;
    answer.fillerLength = 0;
    answer.tail.clear();
}

void SetStatus(const Fault& fault, Answer& answer) {
    answer.status = static_cast<int>(fault.number);
    const bool mayHaveBody = answer.status != 204 && answer.status != 304;
    if (fault.keepsBody && mayHaveBody) return;
    const std::string status = std::to_string(answer.status);
    answer.contentType = "text/html";
    SetBody(answer, mayHaveBody ? "<html><head><title>" + status + "</title></head><body><h1>" + status +
                                      "</h1></body></html>\n"
                                : "");
}

std::string HostileBody(const Fault& fault, uint64_t number, const Answer& answer) {
    if (fault.isSeed) return Mutate(answer.body, static_cast<uint64_t>(fault.number) + number);
    if (const HostileDocument* document = FindHostile(fault.protocol, fault.text)) return document->text;
    const auto& all = HostileDocuments(fault.protocol);
    return all[(number - fault.first) % all.size()].text;
}

// A sound document of so many bytes, most of them in one text.
void MakeBig(const Fault& fault, Answer& answer) {
    const std::string text = "\"err\":\"";
    const size_t at = answer.body.find(text);
    if (fault.protocol == Protocol::kUpload && at != std::string::npos) {
        answer.tail = answer.body.substr(at + text.size());
        answer.body.resize(at + text.size());
    } else if (fault.protocol == Protocol::kConfig) {
        answer.body = R"({"ret":0,"err":"","biz_data":{"rule_id":1,"merged_cfg":{"Big":{"key":")";
        answer.tail = "\"}}}}\n";
    } else {
        answer.body = R"({"retcode":0,"retmsg":")";
        answer.tail = R"(","result":{"count":1,"traceids":["big"]}})"
                      "\n";
    }
    const uint64_t frame = answer.body.size() + answer.tail.size();
    answer.fillerLength = std::max(static_cast<uint64_t>(fault.number), frame) - frame;
}

}  // namespace

void Spoil(const Fault& fault, uint64_t number, const std::string& target, Answer& answer) {
    switch (fault.kind) {
        case Fault::Kind::kStatus:
            return SetStatus(fault, answer);
        case Fault::Kind::kRedirect:
            answer.status = 302;
            answer.headers.emplace_back("Location", fault.text.empty() ? target : fault.text);
            return SetBody(answer, "");
        case Fault::Kind::kEmpty:
            return SetBody(answer, "");
        case Fault::Kind::kObject:
            return SetBody(answer, "{}");
        case Fault::Kind::kHostile:
            return SetBody(answer, HostileBody(fault, number, answer));
        case Fault::Kind::kCode:
            return SetBody(answer, fault.protocol == Protocol::kTraceIds ? TraceIdError(fault.number, "ordered fault")
                                                                         : ConfigError(fault.number, "ordered fault"));
        case Fault::Kind::kBig:
            return MakeBig(fault, answer);
        case Fault::Kind::kDelay:
        case Fault::Kind::kHold:
        case Fault::Kind::kRuleId:
        case Fault::Kind::kNextPos:
        case Fault::Kind::kUploadUrl:
            return;
    }
}

}  // namespace OrvaneDevServer
