// A serial line with one unit or up to eight addressed ones at its end, served
// by a thread of its own. It can keep the pace of a real line and misbehave on request.
#pragma once

#include "sim/Fault.h"
#include "sim/SimulatedUnit.h"
#include "sim/Wire.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace sim {

class LineWorker;

/// All members may be called from any thread.
class SimulatedLine
{
public:
    using Responder = std::function<std::optional<std::string>(const std::string &command)>;
    using Listener = std::function<void(bool fromUnit, const std::string &line)>;

    explicit SimulatedLine(std::unique_ptr<Wire> wire);
    SimulatedLine();  ///< on a pseudo-terminal; throws std::system_error when there is none
    ~SimulatedLine(); ///< ends the thread, hangs the line up
    SimulatedLine(const SimulatedLine &) = delete;
    SimulatedLine &operator=(const SimulatedLine &) = delete;

    std::string device() const; ///< what the program opens; stays after unplug
    void addUnit(std::shared_ptr<SimulatedUnit> unit); ///< throws std::length_error at the ninth
    /// Replaces the units; the reply is sent with the terminator, nothing means silence. It runs on
    /// the line's thread and may call the line's other members.
    void setResponder(Responder responder);
    /// Called on the line's thread with every command and every reply as it is sent.
    void setListener(Listener listener);
    void setPaced(bool paced);                  ///< 19200 baud: 10 bits a byte, both ways
    void setTerminator(std::string terminator); ///< default "\r"; "\r\n" is possible
    /// Only commands that start with the prefix; empty = all. The fault ends after so many
    /// replies; -1 = never. One fault at a time: a new one replaces the old.
    void setFault(Fault fault, std::string commandPrefix = {}, int times = -1);
    void setLateBy(std::chrono::milliseconds lateBy); ///< of Fault::LateReply, default 300 ms

    std::vector<std::string> commands() const; ///< every line received, without CR, in order
    void clearCommands();
    /// True once the transcript holds that many lines; false after the time.
    bool waitForCommands(std::size_t count, std::chrono::milliseconds timeout) const;
    std::size_t bytesReceived() const;
    void send(const std::string &bytes); ///< unsolicited, as they are
    void unplug();                       ///< hangs up: the program sees the terminal vanish
    std::uint64_t bitsOnWire() const;    ///< both ways since the start, 10 a byte

private:
    std::unique_ptr<LineWorker> worker_;
};

} // namespace sim
