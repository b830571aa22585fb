// Where the ids come from: span ids are made here, trace ids are the server's, one for each run of the process.
//
// The server hands trace ids out in batches, which are kept in a file of the cache folder. A run takes the first; when
// few are left it asks for more, which serve a later run. Without one, the device makes a stand-in: nobody waits for
// the network.
#ifndef ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_YARROW_TRACE_ID_MANAGER_H
#define ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_YARROW_TRACE_ID_MANAGER_H

#include <cstdint>

#include "Base/Container/AArray.h"
#include "Orvane/DataTask.h"
#include "PluginManager/InnerPlugin/Yarrow/PrivateRandom.h"
#include "PluginManager/InnerPlugin/Yarrow/TraceIdStore.h"
#include "System/Thread/Mutex.h"

namespace Orvane::Plugin {

class TraceIdManager final : public Quern::DataTask::Listener {
public:
    // Reads the settings; neither the file nor the network is touched before the first GetTraceId.
    TraceIdManager();
    // Waits for an answer that is being taken. With none of tracing's locks held: it passes that of all HTTP listeners.
    ~TraceIdManager();
    TraceIdManager(const TraceIdManager&) = delete;
    TraceIdManager& operator=(const TraceIdManager&) = delete;

    // On the HTTP tasks' thread. Takes no lock: the one file access it could meet, the pop, came before the request.
    // An answer longer than a whole stock is refused unread, since what is parsed of it takes many times its room.
    void OnDataTaskFinished(Quern::DataTask* task, Quern::WWWErrorCode error, int httpStatus, const char* data,
                            long long size) override;

    // The trace id of this run; never empty. Any thread.
    virtual Quern::AString GetTraceId();
    // Writes a new span id, 11 characters and a terminator, unique in this process for 65,536 calls at the least.
    // False, and nothing written, for null and less than 12 bytes. One thread at a time: the caller's lock.
    //   positions 0-31   seconds since the epoch
    //             32-47  random
    //             48-63  a count of the process's spans, from 1
    //             64-65  0
    virtual bool GenSpanId(char* out, int size);

    // Asks the server for so many ids; what comes of it is told in the log alone.
    virtual void requestTraceIdList(unsigned int count);
    // "ENDPOINT?buzid=GAME&setid=0&pritype=0&pubtype=1&count=N", nothing of it encoded.
    virtual Quern::AString genTraceUrl(int count);
    // Adds the ids of an answer, all or none.
    virtual bool parseTraceIdData(Quern::AArray* ids, const char* data, int length);
    // Takes the first id out of the file, which is made if it is not there. Empty if there is none. `count` is how many
    // are left; it stays as it was where that is not known, and where the file could not be written: the next run then
    // takes the same id.
    virtual Quern::AString pop1TraceIdfromFile(int& count);
    // Writes the file anew, with these ids behind those that the pop left. False, and nothing changed, for null and for
    // more than a stock holds; false if the file could not be written, which then is as it was.
    virtual bool appendTraceIdSettoFile(Quern::AArray* ids);
    // A trace id of the device's own, of 32 characters; the last is always "2", which no issued one is.
    //   positions 0-31    game id, its low bits
    //             48-63   public type
    //             64-79   private type
    //             80-111  seconds since the epoch
    //             190     1
    virtual Quern::AString genFakeTraceId(unsigned short priType, unsigned short pubType);

    // Logs what is set for tracing now, whatever this object has read.
    virtual void DumpCloudCtrlData() const;

private:
    struct _tagTraceConfig {
        int upperLimit;  // told in the log alone
        int lowerLimit;  // with so many ids left, or fewer, more are asked for
        int requestCount;
        Quern::AString storeFileName;  // the whole path
    };

    static _tagTraceConfig ReadConfig();

    // Behind the trace service's. Over the pop and the making of the request, so that a run takes one id.
    Quern::CMutex _mutex{true};
    Quern::DataTask* _dataTask = nullptr;  // used again with the address that it was made with
    _tagTraceIdStore _traceIdStore;        // the file as it was last read or written
    uint16_t _spanSequence = 0;
    Quern::AString _traceId;
    const _tagTraceConfig _config;
    PrivateRandom _random;
};

}  // namespace Orvane::Plugin

#endif
