#include "DevServer/Message.h"

#include <strings.h>

namespace OrvaneDevServer {

bool EqualIgnoringCase(std::string_view left, std::string_view right) {
    return left.size() == right.size() && strncasecmp(left.data(), right.data(), left.size()) == 0;
}

const std::string* FindHeader(const Request& request, std::string_view name) {
    for (const auto& [key, value] : request.headers)
        if (EqualIgnoringCase(key, name)) return &value;
    return nullptr;
}

}  // namespace OrvaneDevServer
