// Something asked of the network once, with what came of it as a text and as JSON. Each kind is in a file of its own
// ("PingInquiry.cpp"); a command asks one of them, "diagnose" asks all at once.
#ifndef ORVANE_TOOLS_NET_INQUIRY_H
#define ORVANE_TOOLS_NET_INQUIRY_H

#include <json/json.h>

#include <memory>
#include <string>

#include "Net/Arguments.h"
#include "Net/Output.h"

namespace OrvaneNet {

// Thread rule: everything is called on the main thread. Another thread may finish the work, and then wakes the loop;
// only IsDone may be called before that. An inquiry that is given up is never deleted, since the library may still
// answer it.
class Inquiry {
public:
    virtual ~Inquiry() = default;
    // Asks. What cannot be asked is done at once, and says why in its text.
    virtual void Start() = 0;
    // Whether there is something to show: an answer, a failure, or the reason why nothing was asked.
    virtual bool IsDone() const = 0;
    // What came of it; only once it is done. The text is for people, and may lack its last newline.
    virtual Json::Value Json() const = 0;
    virtual std::string Text() const = 0;
    virtual ExitStatus Status() const = 0;
};

// One for each command; AskUrl is for "diagnose" alone. Nothing is sent before Start. The texts are copied, and so is
// what is needed of `arguments`.
std::unique_ptr<Inquiry> AskState();
std::unique_ptr<Inquiry> AskPing(const Arguments& arguments, const std::string& host);
std::unique_ptr<Inquiry> AskTraceroute(const Arguments& arguments, const std::string& host);
std::unique_ptr<Inquiry> AskLookup(const std::string& host);
std::unique_ptr<Inquiry> AskUrl(const std::string& url);

}  // namespace OrvaneNet

#endif
