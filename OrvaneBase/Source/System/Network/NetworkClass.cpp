// The network as games and siblings reach it: by the name of a run-time class.
#include "Base/RunTimeClass.h"
#include "System/Network/CNetwork.h"

namespace Quern {
namespace {

void* GetNativeNetwork(orvane_object*, const char*, void* const*) {
    return static_cast<INetwork*>(CNetwork::GetInstance());
}

// Of an observer that goes, possibly after the library was taken down.
void* RemoveObserver(orvane_object*, const char*, void* const* arguments) {
    CNetwork* const network = CNetwork::InstanceIfAny();
    if (network && arguments) network->RemoveObserver(static_cast<CNetworkObserver*>(arguments[0]));
    return nullptr;
}

// Calls the function, a void (*)(void* context, const char* bytes, int size), with the record's bytes.
void* EncodeDetailNetworkInfo(orvane_object*, const char*, void* const* arguments) {
    if (!arguments || !arguments[0]) return nullptr;
    AString bytes;
    CNetwork::GetInstance()->GetDetailNetworkInfo().Encode(bytes);
    reinterpret_cast<void (*)(void*, const char*, int)>(arguments[0])(arguments[1], bytes.data(), bytes.size());
    return arguments[0];
}

}  // namespace

void RegisterNetworkClass() {
    RegisterRunTimeClass("OrvaneNetwork", {},
                         {{"getNativeNetwork", GetNativeNetwork},
                          {"removeObserver:", RemoveObserver},
                          {"encodeDetailNetworkInfo:context:", EncodeDetailNetworkInfo}});
}

}  // namespace Quern
