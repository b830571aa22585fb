// Holds operations and tasks back until the test lets them go.
#ifndef ORVANE_TESTS_SYSTEM_OPERATION_GATE_H
#define ORVANE_TESTS_SYSTEM_OPERATION_GATE_H

#include "Support/Test.h"

namespace OrvaneTest {

class Gate {
public:
    // Opens, and waits for those inside: they still write to it once it is open.
    ~Gate() {
        Open();
        WaitFor([this] { return _left == _entered; });
    }
    // Waits until the gate is open.
    void Pass() {
        ++_entered;
        WaitFor([this] { return _open.load(); });
        ++_left;
    }
    void Open() { _open = true; }
    // Waits until so many have come to the gate.
    bool WaitForEntered(int count) {
        return WaitFor([&] { return _entered >= count; });
    }
    // Waits until so many have passed it.
    bool WaitForLeft(int count) {
        return WaitFor([&] { return _left >= count; });
    }
    int Entered() const { return _entered; }

private:
    std::atomic<int> _entered{0};
    std::atomic<int> _left{0};
    std::atomic<bool> _open{false};
};

}  // namespace OrvaneTest

#endif
