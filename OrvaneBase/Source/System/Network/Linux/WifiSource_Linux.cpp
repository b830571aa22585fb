#include "System/Network/WifiSource.h"

#include <linux/nl80211.h>
#include <net/if.h>
#include <netlink/genl/ctrl.h>
#include <netlink/genl/genl.h>

#include <functional>
#include <optional>

#include "System/Network/Linux/Netlink.h"
#include "System/Network/Linux/Nl80211.h"

namespace Quern {
namespace {

// Asks nl80211 for the list that a command gives, of one interface if `index` is not 0, and hands each entry on.
// Nothing comes where the kernel has no wireless drivers.
void Dump(uint8_t command, unsigned index, const std::function<void(nl_msg*)>& take) {
    const NetlinkSocket socket = OpenNetlink(NETLINK_GENERIC);
    const int family = socket ? genl_ctrl_resolve(socket.get(), NL80211_GENL_NAME) : -1;
    const NetlinkMessage request(nlmsg_alloc());
    if (family < 0 || !request ||
        !genlmsg_put(request.get(), NL_AUTO_PORT, NL_AUTO_SEQ, family, 0, NLM_F_DUMP, command, 0) ||
        (index != 0 && nla_put_u32(request.get(), NL80211_ATTR_IFINDEX, index) < 0))
        return;
    const auto onEntry = [](nl_msg* entry, void* take) -> int {
        (*static_cast<const std::function<void(nl_msg*)>*>(take))(entry);
        return NL_OK;
    };
    nl_socket_modify_cb(socket.get(), NL_CB_VALID, NL_CB_CUSTOM, onEntry,
                        const_cast<std::function<void(nl_msg*)>*>(&take));
    if (nl_send_auto(socket.get(), request.get()) >= 0) nl_recvmsgs_default(socket.get());
}

class Nl80211WifiSource final : public WifiSource {
public:
    std::vector<std::string> CNCopySupportedInterfaces() override {
        std::vector<std::string> names;
        Dump(NL80211_CMD_GET_INTERFACE, 0, [&names](nl_msg* message) {
            if (std::optional<std::string> name = StationOf(message)) names.push_back(std::move(*name));
        });
        return names;
    }

    NetworkInfo CNCopyCurrentNetworkInfo(const std::string& interface) override {
        NetworkInfo info;
        const unsigned index = if_nametoindex(interface.c_str());
        if (index == 0) return info;
        Dump(NL80211_CMD_GET_SCAN, index, [&info](nl_msg* message) {
            if (std::optional<NetworkInfo> network = AssociatedNetworkOf(message)) info = std::move(*network);
        });
        return info;
    }
};

}  // namespace

template <>
std::shared_ptr<WifiSource> Seam<WifiSource>::MakeBuiltIn() {
    return std::make_shared<Nl80211WifiSource>();
}

}  // namespace Quern
