// A login plugin "RAVEL" that offers no service: whoever asks it for the account finds none.
#include "Support/IdlePlugin.h"

__attribute__((constructor)) static void Register() {
    (new OrvaneTest::IdlePlugin("RAVEL", "0.1"))->Register();
}
