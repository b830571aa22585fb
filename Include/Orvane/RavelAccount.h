/// \file RavelAccount.h
/// Who is logged in, as the login plugin "RAVEL" tells it through its service "ACCOUNT". Slot order and the record's
/// layout are a binary contract.
#ifndef ORVANE_RAVEL_ACCOUNT_H
#define ORVANE_RAVEL_ACCOUNT_H

#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include "Orvane/IPluginService.h"
#include "Orvane/PluginBase.h"

namespace Orvane {
namespace Plugin {
namespace Ravel {

/// The record that the login plugin fills, as a rule by writing into the buffers. A plugin may also delete[] a buffer
/// and leave null in its place, or a text of its own that ends with a terminator and was made by new char[]: whatever
/// the record leads to is the record's, and goes with it.
struct RavelAccount {
    enum : size_t { kOpenIDSize = 128, kText1024Size = 1024, kText64Size = 64, kText16Size = 16 };

    RavelAccount()
        : openID(new char[kOpenIDSize + 1]()),  // one more, which ends it
          text1024(new char[kText1024Size]()),
          text64(new char[kText64Size]()),
          text16(new char[kText16Size]()),
          channelID(0),
          reserved(0) {}
    ~RavelAccount() {
        delete[] openID;
        delete[] text1024;
        delete[] text64;
        delete[] text16;
    }
    RavelAccount(const RavelAccount&) = delete;
    RavelAccount& operator=(const RavelAccount&) = delete;

    /// Whether there is an open id that the library takes: not null, and 128 bytes at the most.
    bool HasOpenID() const { return openID && memchr(openID, '\0', kOpenIDSize + 1); }

    char* openID;       ///< the user's open id, which may fill its buffer of 128 bytes to the end
    char* text1024;     ///< the login plugin's own
    char* text64;       ///< the login plugin's own
    char* text16;       ///< the login plugin's own
    int32_t channelID;  ///< the login channel's number
    intptr_t reserved;  ///< the login plugin's own
};

/// The service "ACCOUNT" of the login plugin "RAVEL". Called on whatever thread makes an event or a span;
/// for a span under the lock of tracing (ITraceService.h), so it must not wait for another thread that traces.
class IAccountService : public IPluginService {
public:
    /// Fills the record with the present login.
    /// \return false if nobody is logged in
    virtual bool GetLoginRet(RavelAccount& account) = 0;
};

}  // namespace Ravel

/// IAccountService::GetLoginRet, for a plugin that has cached its manager.
/// \return false without the login plugin or its service as well
inline bool sg_get_login_ret(PluginBase* plugin, Ravel::RavelAccount& account) {
    IPluginManager* manager = plugin ? plugin->GetPluginManager() : nullptr;
    IPlugin* login = manager ? manager->GetPluginByName("RAVEL") : nullptr;
    Ravel::IAccountService* service =
        login ? static_cast<Ravel::IAccountService*>(login->GetServiceByName("ACCOUNT")) : nullptr;
    return service && service->GetLoginRet(account);
}

}  // namespace Plugin
}  // namespace Orvane

#endif
