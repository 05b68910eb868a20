// The program's windows, as start-up is handed them.
#pragma once

#include "app/AppState.h"

WindowMakers windowMakers();
