/// \file IOrvaneCore.h
/// The facade of the library for native callers. Slot order is a binary contract.
#ifndef ORVANE_I_ORVANE_CORE_H
#define ORVANE_I_ORVANE_CORE_H

namespace Orvane {

/// Obtained from orvanecore_getInstance (OrvaneCore.h). The object is owned by the library and lives for the process.
/// Any thread. Deleting it takes the whole base library down, as IBase::Release does, and that one's rules hold then.
class IOrvaneCore {
public:
    virtual ~IOrvaneCore() {}
    /// Kept for its callers: every start-up task belongs to the plugin lifecycle. \return 0
    virtual int Initialize() = 0;
    /// Sets the threshold of the library's own logger, 0 (debug) to 5 (none).
    virtual void SetLogLevel(int level) = 0;
    /// \return the library's version, a constant.
    virtual const char* GetVersion() = 0;
    /// Sets the base URL of the configuration server, without the path.
    virtual void SetRemoteConfigUrl(const char* url) = 0;
    /// Forgets the stored answer of the configuration server.
    virtual void ClearRemoteConfigCache() = 0;

    /// The one facade, made at the first call. Not exported: for the library itself; others use orvanecore_getInstance.
    static IOrvaneCore* GetInstance();
};

}  // namespace Orvane

#endif
