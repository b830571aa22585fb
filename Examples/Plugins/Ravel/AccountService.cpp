#include "AccountService.h"

#include <errno.h>
#include <stdlib.h>
#include <string.h>

#include <fstream>
#include <string>

#include "Orvane/RunTime.h"

namespace Ravel {
namespace {

bool ParseChannel(const std::string& text, int32_t& out) {
    errno = 0;
    char* end = nullptr;
    const long number = strtol(text.c_str(), &end, 10);
    if (text.empty() || *end || errno || number < INT32_MIN || number > INT32_MAX) return false;
    out = static_cast<int32_t>(number);
    return true;
}

// The value of a line "key=value"; false for another key.
bool Value(const std::string& line, const char* key, std::string& out) {
    const size_t length = strlen(key);
    if (line.compare(0, length, key) != 0 || line.size() == length || line[length] != '=') return false;
    out = line.substr(length + 1);
    if (!out.empty() && out[out.size() - 1] == '\r') out.resize(out.size() - 1);
    return true;
}

}  // namespace

const char* AccountService::GetName() const {
    return kServiceName;
}

const char* AccountService::GetPluginName() const {
    return kPluginName;
}

bool AccountService::GetLoginRet(Orvane::Plugin::Ravel::RavelAccount& account) {
    const char* path = getenv("RAVEL_ACCOUNT");
    std::ifstream file(path ? path : "");
    if (!file) return false;

    std::string openId, channel = "0", line;
    while (std::getline(file, line)) {
        if (!Value(line, "openid", openId)) Value(line, "channel", channel);
    }
    int32_t channelId = 0;
    if (openId.size() > Orvane::Plugin::Ravel::RavelAccount::kOpenIDSize || !ParseChannel(channel, channelId)) {
        orvane_console_log("RAVEL cannot use the account in %s", path);
        return false;
    }
    if (openId.empty()) return false;
    memcpy(account.openID, openId.data(), openId.size());
    account.channelID = channelId;
    return true;
}

}  // namespace Ravel
