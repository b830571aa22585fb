// The fetches that are being answered. A client has one at a time, so a second one of a device is a fault of the client
// (or two processes under one device id), which is reported.
#ifndef ORVANE_TOOLS_DEVSERVER_FETCHES_H
#define ORVANE_TOOLS_DEVSERVER_FETCHES_H

#include <map>
#include <mutex>
#include <string>

#include "DevServer/Message.h"

namespace OrvaneDevServer {

// Any thread. Holds no fetch back: it only tells.
class Fetches {
public:
    // One fetch, while it lives. The request must outlive it.
    class Entry {
    public:
        // Enters the fetch; the destructor takes it out again. A fetch without a device is no second one of any.
        Entry(Fetches& fetches, const std::string& device, const Request& request);
        ~Entry();
        Entry(const Entry&) = delete;
        Entry& operator=(const Entry&) = delete;

        // Whether another fetch of this device waited for its answer when this one came. One whose sender had left does
        // not count: the client gave it up.
        bool IsSecond() const { return _isSecond; }

    private:
        Fetches& _fetches;
        std::multimap<std::string, const Request*>::iterator _at;
        bool _isSecond = false;
    };

private:
    std::mutex _mutex;  // guards the map; a request is asked under it whether its sender has left
    std::multimap<std::string, const Request*> _byDevice;
};

}  // namespace OrvaneDevServer

#endif
