// The debug switches of the run.
#include "core/DebugSwitches.h"

DebugSwitches &debugSwitches()
{
    static DebugSwitches switches;
    return switches;
}
