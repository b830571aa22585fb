// A library whose two plugins the host must refuse: one has no name, the other no version.
#include "Support/IdlePlugin.h"

__attribute__((constructor)) static void Register() {
    (new OrvaneTest::IdlePlugin(nullptr, "1.0"))->Register();
    (new OrvaneTest::IdlePlugin("Versionless", nullptr))->Register();
}
