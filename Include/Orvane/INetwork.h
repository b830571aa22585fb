/// \file INetwork.h
/// How the device is connected, for code that does not link to the library. Header-only: link liborvaneruntime.so and
/// nothing else. C++11.
///
/// The library watches the system's routes and links. What changes within 200 ms (500 at most) is one change; one that
/// ends where it began is none. A switch from one kind of connection to another is told as kANetworkNotReachable and
/// then the new state, so that whoever owns connections sees the old link die. A change that leaves the state as it is
/// (another gateway or address) is told too. Changes are told on the main thread (Orvane/MainRunLoop.h), or in the
/// engine's tick once Quern_EnableManualUpdate was called.
///
/// A child that the process forks has a copy of the watch that never tells it anything: fork, then exec.
#ifndef ORVANE_I_NETWORK_H
#define ORVANE_I_NETWORK_H

#include <list>
#include <mutex>
#include <string>

#include "Orvane/NetworkState.h"
#include "Orvane/RunTime.h"

namespace Quern {

struct _tagADetailNetworkInfo;  // the library's own; other libraries read DetailNetworkInfo

/// Hears of changes between INetwork::AddObserver and its destruction. Destroy it on the thread that tells the changes,
/// or take it out with INetwork::RemoveObserver before, which waits for a change that is being told. The order of the
/// virtual operations is a contract between libraries.
class CNetworkObserver {
public:
    CNetworkObserver() {}
    /// Takes the object out of the network's observers; does nothing in a process without the library.
    virtual ~CNetworkObserver() {
        void* arguments[] = {this};
        orvane_class_perform(orvane_class_lookup("OrvaneNetwork"), "removeObserver:", arguments);
    }

    /// Told on the main thread or in the engine's tick. May remove observers, itself too (the one behind it then misses
    /// this change), but must not add one. This one keeps the state for PopStateFromChangedList; a subclass that
    /// overrides it keeps nothing.
    virtual void OnNetworkStateChanged(ANetworkState state) {
        const std::lock_guard<std::recursive_mutex> guard(_mutex);
        _changedList.push_back(state);
    }

    /// Takes the oldest state that was kept. Any thread.
    /// \return false, and `state` untouched, if there is none
    bool PopStateFromChangedList(ANetworkState& state) {
        const std::lock_guard<std::recursive_mutex> guard(_mutex);
        if (_changedList.empty()) return false;
        state = _changedList.front();
        _changedList.pop_front();
        return true;
    }
    /// How many states are kept. Any thread.
    int CountOfChangedStates() {
        const std::lock_guard<std::recursive_mutex> guard(_mutex);
        return static_cast<int>(_changedList.size());
    }

private:
    CNetworkObserver(const CNetworkObserver&);
    CNetworkObserver& operator=(const CNetworkObserver&);

    std::list<ANetworkState> _changedList;
    std::recursive_mutex _mutex;  // guards _changedList
};

/// The network's state. The order of the virtual operations is a contract between libraries. Any thread.
class INetwork {
public:
    virtual ~INetwork() {}

    /// Asks the system anew at each call; nothing is cached.
    /// \return 0, 1 or 2
    virtual ANetworkState GetNetworkState() = 0;
    /// For the library itself, since the record holds objects of its own. Others call gs_OrvaneDetailNetworkInfo.
    virtual _tagADetailNetworkInfo GetDetailNetworkInfo() = 0;
    /// Sets the one callback that hears of changes, behind the observers and under the same rules. It replaces the one
    /// before, quern_network_SetNetworkChangedCallback's too; null takes it away.
    virtual void SetCallback(void (*callback)(ANetworkState state)) = 0;
    /// Observers are not owned, stand once, and hear of changes in the order of their addition.
    virtual void AddObserver(CNetworkObserver* observer) = 0;
    /// An unknown observer is ignored.
    virtual void RemoveObserver(CNetworkObserver* observer) = 0;

    /// The one instance, made at the first call. It is released when the library is taken down (Orvane/IBase.h) or the
    /// application tells its OnDestroy: both wait for a change that is being told on another thread, and drop
    /// observers, the callback and what is not told yet. A pointer from before still answers but tells nothing any
    /// more; the next call makes another instance, so do not keep the pointer across those. \return null in a process
    /// without the library
    static INetwork* GetInstance() {
        return static_cast<INetwork*>(
            orvane_class_perform(orvane_class_lookup("OrvaneNetwork"), "getNativeNetwork", nullptr));
    }
};

/// The detail record in the terms of other libraries. It crosses as bytes, the same that
/// quern_network_GetDetailNetworkInfo gives: the fields in this order, an integer as 4 bytes, the highest first, a text
/// as its length, an integer, and its bytes without a terminator.
struct DetailNetworkInfo {
    DetailNetworkInfo() : state(0), carrier(0) {}

    int32_t state;    ///< 0, 2 or 4 to 8
    int32_t carrier;  ///< off cellular and without a SIM 0; 2 to 5 the carrier groups known by name; 1 any other
    std::string carrierCode;  ///< mobile country code and mobile network code, as "46000"; empty off cellular
    std::string ssid;         ///< the Wi-Fi network's name, bytes of any encoding; empty off Wi-Fi
    std::string bssid;        ///< the access point's id, as "02:00:00:00:00:01"; empty off Wi-Fi
    std::string currentAPN;   ///< always empty

    /// Takes the fields from the bytes.
    /// \return false, with what stood in whole fields taken, if they are cut short
    bool Decode(const char* bytes, int size) {
        const char* const end = bytes + size;
        return Read(bytes, end, state) && Read(bytes, end, carrier) && Read(bytes, end, carrierCode) &&
               Read(bytes, end, ssid) && Read(bytes, end, bssid) && Read(bytes, end, currentAPN);
    }

private:
    static bool Read(const char*& at, const char* end, int32_t& value) {
        if (end - at < 4) return false;
        uint32_t bits = 0;
        for (int i = 0; i < 4; ++i)
            bits = bits << 8 | static_cast<unsigned char>(*at++);
        value = static_cast<int32_t>(bits);
        return true;
    }
    static bool Read(const char*& at, const char* end, std::string& text) {
        int32_t length = 0;
        if (!Read(at, end, length) || length < 0 || length > end - at) return false;
        text.assign(at, static_cast<size_t>(length));
        at += length;
        return true;
    }
};

}  // namespace Quern

/// The network of this process. See INetwork::GetInstance.
inline Quern::INetwork* gs_OrvaneNetwork() {
    return Quern::INetwork::GetInstance();
}

/// Asks the system how the device is connected, in detail. Any thread.
/// \return false, and `out` untouched, without the library
inline bool gs_OrvaneDetailNetworkInfo(Quern::DetailNetworkInfo& out) {
    struct Taker {
        static void Take(void* out, const char* bytes, int size) {
            static_cast<Quern::DetailNetworkInfo*>(out)->Decode(bytes, size);
        }
    };
    void* arguments[] = {reinterpret_cast<void*>(&Taker::Take), &out};
    return orvane_class_perform(orvane_class_lookup("OrvaneNetwork"), "encodeDetailNetworkInfo:context:", arguments) !=
           nullptr;
}

#endif
