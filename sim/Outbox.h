// Bytes on their way to the program, each group with the moment when it is due.
#pragma once

#include "sim/WireClock.h"

#include <map>
#include <optional>
#include <string>

namespace sim {

class Outbox
{
public:
    using Time = WireClock::Time;

    /// Whole at that moment.
    void post(Time due, const std::string &bytes) { waiting_.emplace(due, bytes); }
    /// Byte by byte at the line's pace, from the moment the line is free but not before earliest.
    void postPaced(WireClock &clock, Time earliest, const std::string &bytes);
    /// The next moment at which something is due.
    std::optional<Time> nextDue() const;
    /// Moves what is due by now to the ready bytes.
    void collect(Time now);
    std::string &ready() { return ready_; }
    bool empty() const { return waiting_.empty() && ready_.empty(); }
    void clear();

private:
    std::multimap<Time, std::string> waiting_; // equal moments keep their order
    std::string ready_;                        // due, but the peer has not taken it yet
};

} // namespace sim
