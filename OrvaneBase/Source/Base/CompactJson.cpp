#include "Base/CompactJson.h"

#include <json/json.h>

namespace Quern {

std::string WriteCompactJson(const Json::Value& value) {
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "";  // takes away the line ends between members, too
    return Json::writeString(builder, value) + "\n";
}

}  // namespace Quern
