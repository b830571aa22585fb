// The login plugin's view of the application's lifecycle: it may turn the window for its login page.
#ifndef ORVANE_EXAMPLES_RAVEL_LIFECYCLE_OBSERVER_H
#define ORVANE_EXAMPLES_RAVEL_LIFECYCLE_OBSERVER_H

namespace Ravel {

// Enters an object of the run-time class "PluginRavelLifecycle" among the lifecycle's observers. Where
// RAVEL_ORIENTATIONS holds a number, the object answers the question for the window's orientations with that mask, and
// the library lets its answer go before the application's; otherwise it does not respond to the question. Once, while
// the library loads.
void ObserveLifecycle();

}  // namespace Ravel

#endif
