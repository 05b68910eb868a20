// The unit that the main window shows, as the window's parts see it.
#pragma once

#include "core/Presence.h"

#include <memory>

class clsKeldoX;

struct ShownUnit
{
    std::shared_ptr<clsKeldoX> mDevice; // never null
    bool reportsAreStale = false;       // its link was lost: what it still says is not shown
    // Renewed with the unit, when its link is lost and when its controls are switched off.
    Presence tunable;
};
