// The program's windows, as start-up is handed them.
#pragma once

#include "core/AppState.h"

WindowMakers windowMakers();
