// Collects from the journal's lines what the console shows of devices and requests.
#ifndef ORVANE_TOOLS_DEVSERVER_CONSOLE_DEVICE_BOOK_H
#define ORVANE_TOOLS_DEVSERVER_CONSOLE_DEVICE_BOOK_H

#include <json/json.h>

#include <cstdint>
#include <deque>
#include <map>
#include <mutex>
#include <string>

namespace OrvaneDevServer {

// Filled by the lines as they are written, and at the start by the end of the file that earlier runs left. Any thread.
class DeviceBook {
public:
    static constexpr size_t kMostDevices = 1000;  // the one that was not seen for the longest time goes
    static constexpr size_t kMostRequests = 300;

    // `taken`: the modules that the device took from the answer; null if it keeps what it has.
    void Take(const Json::Value& line, const Json::Value* taken);
    // Takes a line of an earlier run. The line does not hold what the device took: that is concluded from the words for
    // the client and the right answer, and left open where a fault spoilt the answer.
    void TakeOld(const Json::Value& line);

    // [{"did","com_params","first","last","fetches","problems","client","status","rule_id"},..], the last seen first.
    Json::Value Devices() const;
    // The same of one, with "modules", what it took last (null if that is not known), and "modules_rule_id",
    // "modules_time". Null for a device that was never seen.
    Json::Value Device(const std::string& did) const;
    // The newest requests, newest first; of one device if `did` is not empty.
    Json::Value Requests(const std::string& did) const;

private:
    struct Entry {
        Json::Value summary{Json::objectValue};  // as Devices gives it
        Json::Value modules;                     // null if not known
        Json::Value modulesRuleId, modulesTime;  // of the answer that they came with
        uint64_t seen = 0;                       // when, as a count of lines
    };

    // Both under the lock.
    void TakeFetch(const Json::Value& line, const Json::Value* taken);
    void ForgetOldest();

    mutable std::mutex _mutex;  // guards all below
    std::map<std::string, Entry> _byDevice;
    std::deque<Json::Value> _requests;  // newest first
    uint64_t _lines = 0;
};

// Hands the book the last lines of a journal; a file that cannot be read has none.
void ReadJournalEnd(const std::string& path, DeviceBook& book);

}  // namespace OrvaneDevServer

#endif
