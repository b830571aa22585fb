#include "System/Network/Linux/Nl80211.h"

#include <linux/nl80211.h>
#include <netlink/genl/genl.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>

namespace Quern {
namespace {

constexpr uint8_t kElementSsid = 0;  // IEEE 802.11, table of element ids
constexpr int kBssidSize = 6;

std::string BssidText(const uint8_t* id) {
    char text[sizeof "00:00:00:00:00:00"];
    snprintf(text, sizeof text, "%02x:%02x:%02x:%02x:%02x:%02x", id[0], id[1], id[2], id[3], id[4], id[5]);
    return text;
}

// Information elements are one behind the other: a byte of kind, a byte of length, the content.
std::string SsidIn(const uint8_t* elements, int size) {
    for (int at = 0; size - at >= 2;) {
        const int length = elements[at + 1];
        if (length > size - at - 2) break;
        if (elements[at] == kElementSsid) return std::string(reinterpret_cast<const char*>(elements + at + 2), length);
        at += 2 + length;
    }
    return {};
}

}  // namespace

std::optional<std::string> StationOf(nl_msg* message) {
    std::array<nlattr*, NL80211_ATTR_MAX + 1> fields{};
    if (genlmsg_parse(nlmsg_hdr(message), 0, fields.data(), NL80211_ATTR_MAX, nullptr) < 0) return std::nullopt;
    nlattr* const name = fields[NL80211_ATTR_IFNAME];
    nlattr* const kind = fields[NL80211_ATTR_IFTYPE];
    const bool isStation = kind && nla_len(kind) >= 4 && nla_get_u32(kind) == NL80211_IFTYPE_STATION;
    if (!name || !isStation) return std::nullopt;
    const char* const text = static_cast<const char*>(nla_data(name));
    return std::string(text, strnlen(text, static_cast<size_t>(nla_len(name))));
}

std::optional<WifiSource::NetworkInfo> AssociatedNetworkOf(nl_msg* message) {
    std::array<nlattr*, NL80211_ATTR_MAX + 1> fields{};
    std::array<nlattr*, NL80211_BSS_MAX + 1> network{};
    if (genlmsg_parse(nlmsg_hdr(message), 0, fields.data(), NL80211_ATTR_MAX, nullptr) < 0 ||
        !fields[NL80211_ATTR_BSS] ||
        nla_parse_nested(network.data(), NL80211_BSS_MAX, fields[NL80211_ATTR_BSS], nullptr) < 0)
        return std::nullopt;
    nlattr* const status = network[NL80211_BSS_STATUS];
    if (!status || nla_len(status) < 4 || nla_get_u32(status) != NL80211_BSS_STATUS_ASSOCIATED) return std::nullopt;

    WifiSource::NetworkInfo info;
    nlattr* const id = network[NL80211_BSS_BSSID];
    nlattr* const elements = network[NL80211_BSS_INFORMATION_ELEMENTS];
    if (id && nla_len(id) >= kBssidSize) info.bssid = BssidText(static_cast<const uint8_t*>(nla_data(id)));
    if (elements) info.ssid = SsidIn(static_cast<const uint8_t*>(nla_data(elements)), nla_len(elements));
    return info;
}

}  // namespace Quern
