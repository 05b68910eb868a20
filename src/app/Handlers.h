// How the handlers of controls that act on a unit run: under the event guard, with their failures
// reported, and with the control put back to what is true.
#pragma once

#include "app/AppState.h"
#include "core/ResumeNext.h"

#include <QScopeGuard>

#include <utility>

// Runs the body only while the guard is up, lowers it for the length of the body and raises it
// afterwards, also when the body or whoever hears of the guard fails. Tells whether it was up.
template <class Body> bool whileGuarded(Body &&body)
{
    EventGuard &guard = app().guard();
    if (!guard.isUp())
        return false;
    const auto raise = qScopeGuard([&guard] { guard.set(true); });
    guard.set(false);
    std::forward<Body>(body)();
    return true;
}

// Puts the control back where the guard refused the operator's action.
template <class PutBack> struct IfRefused
{
    PutBack putBack;
    static constexpr bool always = false;
};
template <class PutBack> IfRefused(PutBack) -> IfRefused<PutBack>;

// Puts the control back in any case: what it shows then is what the unit made of the action.
template <class PutBack> struct Afterwards
{
    PutBack putBack;
    static constexpr bool always = true;
};
template <class PutBack> Afterwards(PutBack) -> Afterwards<PutBack>;

// Runs a handler: the body is only what it does. What fails is reported under the source, the
// body's own failure while the guard is still down. Tells whether the body ran.
template <class Body> bool handle(const char *source, Body &&body)
{
    bool ran = false;
    reportAndEnd(source, [&] {
        whileGuarded([&] {
            ran = true;
            reportAndEnd(source, std::forward<Body>(body));
        });
    });
    return ran;
}

template <class Body, class PutBack>
void handle(const char *source, Body &&body, const PutBack &control)
{
    if (!handle(source, std::forward<Body>(body)) || PutBack::always)
        control.putBack();
}
