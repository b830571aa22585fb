// Something asked of the network once, with what came of it as a text and as JSON.
#ifndef ORVANE_TOOLS_NET_INQUIRY_H
#define ORVANE_TOOLS_NET_INQUIRY_H

#include <json/json.h>

#include <memory>
#include <string>

#include "Net/Arguments.h"
#include "Net/Output.h"

namespace OrvaneNet {

// Thread rule: the main thread, but IsDone alone is also asked while another thread finishes the work.
class Inquiry {
public:
    virtual ~Inquiry() = default;
    // Asks. What cannot be asked is done at once, and says why in its text.
    virtual void Start() = 0;
    virtual bool IsDone() const = 0;
    // Once done.
    virtual Json::Value Json() const = 0;
    virtual std::string Text() const = 0;
    virtual ExitStatus Status() const = 0;
};

// One for each command. Nothing is sent before Start; `arguments` must outlive the inquiry.
std::unique_ptr<Inquiry> AskState();
std::unique_ptr<Inquiry> AskPing(const Arguments& arguments, const std::string& host);
std::unique_ptr<Inquiry> AskTraceroute(const Arguments& arguments, const std::string& host);
std::unique_ptr<Inquiry> AskLookup(const std::string& host);
std::unique_ptr<Inquiry> AskUrl(const std::string& url);

}  // namespace OrvaneNet

#endif
