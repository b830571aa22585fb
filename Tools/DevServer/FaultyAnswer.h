// What an ordered fault makes of the right answer. Several faults may meet in one answer: each changes what the one
// before has left.
#ifndef ORVANE_TOOLS_DEVSERVER_FAULTY_ANSWER_H
#define ORVANE_TOOLS_DEVSERVER_FAULTY_ANSWER_H

#include <cstdint>
#include <string>

#include "DevServer/Fault.h"
#include "DevServer/Message.h"

namespace OrvaneDevServer {

// `number` is the request's in its protocol, `target` what it asked for. Faults that wait, and those of a
// member of the right answer, change nothing here.
void Spoil(const Fault& fault, uint64_t number, const std::string& target, Answer& answer);

}  // namespace OrvaneDevServer

#endif
