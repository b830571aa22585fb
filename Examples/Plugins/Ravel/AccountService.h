// The service "ACCOUNT": the login, kept in a small text file.
#ifndef ORVANE_EXAMPLES_RAVEL_ACCOUNT_SERVICE_H
#define ORVANE_EXAMPLES_RAVEL_ACCOUNT_SERVICE_H

#include "Orvane/RavelAccount.h"

namespace Ravel {

constexpr char kPluginName[] = "RAVEL";
constexpr char kServiceName[] = "ACCOUNT";

// Any thread.
class AccountService final : public Orvane::Plugin::Ravel::IAccountService {
public:
    const char* GetName() const override;
    const char* GetPluginName() const override;
    // Reads the file that RAVEL_ACCOUNT names at each call, so that a login or logout counts at once:
    //
    //     openid=3F1C9A
    //     channel=17
    //
    // False without that variable or file, without an open id, and, told on the console, where a value does not fit.
    bool GetLoginRet(Orvane::Plugin::Ravel::RavelAccount& account) override;
};

}  // namespace Ravel

#endif
