/// \file RavelAccount.h
/// Who is logged in, as the login plugin "RAVEL" tells it through its service "ACCOUNT". Slot order and the record's
/// layout are a binary contract.
#ifndef ORVANE_RAVEL_ACCOUNT_H
#define ORVANE_RAVEL_ACCOUNT_H

#include <stddef.h>
#include <stdint.h>

#include "Orvane/IPluginService.h"
#include "Orvane/PluginBase.h"

namespace Orvane {
namespace Plugin {
namespace Ravel {

/// The record that the login plugin fills. The library that makes it owns the buffers: the plugin writes into them and
/// never frees or replaces one.
struct RavelAccount {
    enum : size_t { kOpenIDSize = 128, kText1024Size = 1024, kText64Size = 64, kText16Size = 16 };

    RavelAccount()
        : openID(new char[kOpenIDSize]()),
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

    char* openID;       ///< the user's open id; without a terminator if it is as long as the buffer
    char* text1024;     ///< the login plugin's own
    char* text64;       ///< the login plugin's own
    char* text16;       ///< the login plugin's own
    int32_t channelID;  ///< the login channel's number
    intptr_t reserved;  ///< the login plugin's own
};

/// The service "ACCOUNT" of the login plugin "RAVEL". Called on whatever thread makes an event.
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
