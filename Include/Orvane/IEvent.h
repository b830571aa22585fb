/// \file IEvent.h
/// An event that a data plugin sends, and the service by which it makes one. Slot order is a binary contract.
#ifndef ORVANE_I_EVENT_H
#define ORVANE_I_EVENT_H

#include "Orvane/IPluginService.h"

namespace Orvane {
namespace Plugin {

/// One event, implemented and owned by the data plugin; given back through the service that made it. One thread at a
/// time. Texts are copied; `length` is in bytes, without a terminator.
class IEvent {
public:
    virtual ~IEvent() {}
    /// Adds a named field.
    virtual void Add(const char* key, const char* value, int length) = 0;
    /// Adds a numbered field that holds a text.
    virtual void Add(int key, const char* value, int length) = 0;
    /// Adds a numbered field that holds a number.
    virtual void Add(int key, int value) = 0;
    /// Sends the event; may be called more than once.
    virtual void Report() = 0;
};

/// The service "REPORT" of the data plugin "PELL". Called from any thread, several at a time.
class IReportService : public IPluginService {
public:
    /// \return a new event, or null. Given back through DestroyEvent.
    virtual IEvent* CreateEvent(int srcID, const char* eventName) = 0;
    /// Destroys the event and clears the pointer. Null, or a pointer to null, does nothing.
    virtual void DestroyEvent(IEvent** event) = 0;
    /// What the device is, for a library whose setting "UnifyDeviceInfo" is on.
    /// \param key "UUID", "BundleId", "Model", "SysVersion", "AppVersion" or "Brand"
    /// \param buffer points to the pointer to `size` zeroed bytes, which the caller owns; the pointer stays as it is
    /// \return 0 if the answer is in the buffer with its terminator, 1 if it is there cut to size; else it is not known
    virtual unsigned int GetDeviceInfo(const char* key, char** buffer, unsigned int size) = 0;
};

}  // namespace Plugin
}  // namespace Orvane

#endif
