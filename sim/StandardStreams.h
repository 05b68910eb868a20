// A simulated line on the standard input and output of this process, for a program that has started
// it: what that program sends arrives here, and what is printed is what the units answer.
#pragma once

#include "sim/LineSpec.h"

namespace sim {

/// Serves until the input ends, as it does when the program on the other side is gone, however it
/// went, or until the line hangs up. Ends the process.
[[noreturn]] void serveStandardStreams(const LineSpec &spec,
                                       const SimulatedLine::Listener &listener = {});

} // namespace sim
