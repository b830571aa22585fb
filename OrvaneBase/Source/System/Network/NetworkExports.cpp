// The network for the script layer, which takes records as bytes: it has a decoder of its own, and no layout of ours.
#include <cstring>

#include "Base/XLog.h"
#include "Orvane/OrvaneCore.h"
#include "System/Network/CNetwork.h"

using namespace Quern;

quern_network_state quern_network_GetNetworkState() {
    return CNetwork::GetInstance()->GetNetworkState();
}

void quern_network_SetNetworkChangedCallback(void (*callback)(quern_network_state state)) {
    CNetwork::GetInstance()->SetCallback(callback);
}

bool quern_network_GetDetailNetworkInfo(char* buffer, int size) {
    AString data;
    CNetwork::GetInstance()->GetDetailNetworkInfo().Encode(data);
    if (!buffer || data.size() >= size) {
        ORVANE_LOG_ERROR("network_GetDetailNetworkInfo data.size+1>size");
        return false;
    }
    memcpy(buffer, data.data(), static_cast<size_t>(data.size()));
    return true;
}
