// The queue of replies that are due later.
#include "sim/Outbox.h"

namespace sim {

namespace {

// A program that does not read for so long loses bytes, as it would on a line.
constexpr std::size_t mostReady = 262'144;

} // namespace

void Outbox::postPaced(WireClock &clock, Time earliest, const std::string &bytes)
{
    const Time begin = clock.book(earliest, bytes.size());
    for (std::size_t i = 0; i < bytes.size(); ++i)
        waiting_.emplace(begin + WireClock::bytesTime(i + 1), bytes.substr(i, 1));
}

std::optional<Outbox::Time> Outbox::nextDue() const
{
    if (waiting_.empty())
        return std::nullopt;
    return waiting_.begin()->first;
}

void Outbox::collect(Time now)
{
    while (!waiting_.empty() && waiting_.begin()->first <= now) {
        if (ready_.size() < mostReady)
            ready_ += waiting_.begin()->second;
        waiting_.erase(waiting_.begin());
    }
}

void Outbox::clear()
{
    waiting_.clear();
    ready_.clear();
}

} // namespace sim
