// Units as the program makes them.
#pragma once

#include "device/clsKeldoX.h"

#include <memory>

// A unit whose exchanges stop the main window's polling timer.
std::shared_ptr<clsKeldoX> makeUnit();
