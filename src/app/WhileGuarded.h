// Runs a control handler's body under the event guard.
#pragma once

#include "app/AppState.h"

// Runs the body only while the guard is up, lowers it for the length of the body and raises it
// afterwards, also when the body fails. Tells whether the body ran.
template <class Body> bool whileGuarded(Body &&body)
{
    EventGuard &guard = app().guard();
    if (!guard.isUp())
        return false;
    struct Raise
    {
        EventGuard &guard;
        ~Raise() { guard.set(true); }
    };
    guard.set(false);
    const Raise raise{guard};
    body();
    return true;
}
