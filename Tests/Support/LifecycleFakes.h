// Run-time classes that a test makes, for observers and delegates that write down what they hear.
#ifndef ORVANE_TESTS_SUPPORT_LIFECYCLE_FAKES_H
#define ORVANE_TESTS_SUPPORT_LIFECYCLE_FAKES_H

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "Orvane/RunTime.h"

namespace OrvaneTest {

// A class of the table. Its instances write down "<instance> <selector>" in one journal of the process, with the
// arguments behind it if so asked.
class LifecycleClass {
public:
    explicit LifecycleClass(const char* name, bool followsProtocol = true);

    // Gives instances a method that answers that value, or runs an action.
    void Answer(const char* selector, uintptr_t answer);
    void Act(const char* selector, std::function<void()> action);
    // The text names the instance in the journal and outlives it.
    orvane_object Make(const char* name);
    orvane_class* get() const { return _class; }

    // The journal since the last call.
    static std::vector<std::string> Heard();
    static void Note(const std::string& entry);
    static void RecordArguments(bool isOn);

private:
    orvane_class* _class;
};

}  // namespace OrvaneTest

#endif
