// Simulated lines under COM numbers: pseudo-terminals, linked into the ports folder of the user.
// Not on systems without pseudo-terminals.
#pragma once

#include "sim/LineSpec.h"

namespace sim {

struct PortServer
{
    int first = 0;     ///< the lowest COM number for lines without one of their own
    bool logs = false; ///< prints commands and replies
    bool lists = true; ///< prints the lines

    /// Serves until a signal ends it. Throws std::exception when a line cannot be made.
    void run(const std::vector<LineSpec> &lines) const;
};

} // namespace sim
