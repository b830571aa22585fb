// How the platform tells the person in front of it something that needs no answer.
#ifndef ORVANE_SYSTEM_APPLICATION_ALERT_H
#define ORVANE_SYSTEM_APPLICATION_ALERT_H

#include "Base/Seam.h"

namespace Quern {

// Texts are UTF-8, and never null.
struct AlertText {
    const char* title;
    const char* message;
    const char* action;  // the word on the button that closes it
};

// Main thread.
class Alert : public Seam<Alert> {
public:
    // Shows it and returns; nobody waits for the button. The texts are the caller's.
    virtual void Present(const AlertText& text) = 0;
};

template <>
std::shared_ptr<Alert> Seam<Alert>::MakeBuiltIn();

}  // namespace Quern

#endif
