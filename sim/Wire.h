// What joins a simulated line to the program that talks with it: a pseudo-terminal, or the standard
// streams of the simulator's process.
#pragma once

#include "sim/WireClock.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

namespace sim {

/// Used by the line's thread alone, but for wake().
class Wire
{
public:
    using Time = WireClock::Time;

    Wire() = default;
    virtual ~Wire() = default;
    Wire(const Wire &) = delete;
    Wire &operator=(const Wire &) = delete;

    virtual std::string device() const = 0; ///< what the program opens; stays after a hang-up
    virtual bool isOpen() const = 0;        ///< until the hang-up
    virtual void hangUp() = 0;

    virtual std::string read() = 0;                          ///< what is there; never waits
    virtual std::size_t write(const std::string &bytes) = 0; ///< how many went
    /// Until there are bytes, until a call of wake() or until a moment; with bytes left to write
    /// until there may be room for them, too.
    virtual void wait(std::optional<Time> until, bool bytesLeft) = 0;
    virtual void wake() = 0; ///< from any thread
};

/// On a new pseudo-terminal; throws std::system_error when there is none to be had. Not on systems
/// without pseudo-terminals.
std::unique_ptr<Wire> makeTerminalWire();

} // namespace sim
