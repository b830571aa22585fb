// An object that tells how many of its kind are alive, for tests of who deletes what.
#ifndef ORVANE_TESTS_BASE_CONTAINER_WITNESS_H
#define ORVANE_TESTS_BASE_CONTAINER_WITNESS_H

#include "Base/Container/AObject.h"

namespace OrvaneTest {

class Witness : public Quern::AObject {
public:
    explicit Witness(int* alive) : AObject(Quern::kTypeNone), _alive(alive) { ++*_alive; }
    ~Witness() override { --*_alive; }
    Witness* Clone() const override { return new Witness(_alive); }

private:
    int* _alive;
};

}  // namespace OrvaneTest

#endif
