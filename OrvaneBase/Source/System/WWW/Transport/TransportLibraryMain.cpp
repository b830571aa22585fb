// The one symbol of liborvanetransport.so.
#include "Orvane/Export.h"
#include "System/WWW/Transport/CurlTransport.h"

extern "C" ORVANE_EXPORT Quern::Transport* orvane_transport_create(int interface,
                                                                   const Quern::TransportOptions& options);

Quern::Transport* orvane_transport_create(int interface, const Quern::TransportOptions& options) {
    if (interface != Quern::kTransportInterface) return nullptr;
    return Quern::CurlTransport::Make(options).release();
}
