// Answers that are JSON, for people and for the console: those of the control paths. The protocols of devices make
// their own. Any thread.
#ifndef ORVANE_TOOLS_DEVSERVER_JSON_ANSWER_H
#define ORVANE_TOOLS_DEVSERVER_JSON_ANSWER_H

#include <json/json.h>

#include <string>

#include "DevServer/JsonText.h"
#include "DevServer/Message.h"

namespace OrvaneDevServer {

// The value as the compact writer has it, under that status.
inline Answer JsonAnswer(int status, const Json::Value& value) {
    Answer answer;
    answer.status = status;
    answer.body = WriteCompact(value);
    return answer;
}

// {"error":".."}, with the reason in words for the user.
inline Answer ErrorAnswer(int status, const std::string& why) {
    Json::Value value(Json::objectValue);
    value["error"] = why;
    return JsonAnswer(status, value);
}

}  // namespace OrvaneDevServer

#endif
