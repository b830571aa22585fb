/// \file IServiceRegister.h
/// Where a plugin declares its services during OnStartup. Slot order is a binary contract.
#ifndef ORVANE_I_SERVICE_REGISTER_H
#define ORVANE_I_SERVICE_REGISTER_H

namespace Orvane {
namespace Plugin {

/// Implemented by the host. Lives for the duration of one OnStartup call; a plugin never keeps or deletes it.
class IServiceRegister {
public:
    /// Declares a service. The name is copied; a name declared twice stands twice.
    /// \return false for a null name, which declares nothing.
    virtual bool Register(const char* serviceName) = 0;

protected:
    ~IServiceRegister() {}  // not virtual: the table holds Register alone
};

}  // namespace Plugin
}  // namespace Orvane

#endif
