// The timetable of a line at 19200 baud, 10 bits a byte: when bytes are over, both ways. Only
// arithmetic on deadlines, so that nothing adds up from one exchange to the next.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>

namespace sim {

class WireClock
{
public:
    using Clock = std::chrono::steady_clock;
    using Time = Clock::time_point;

    static constexpr std::int64_t baud = 19200;
    static constexpr std::int64_t bitsPerByte = 10;
    static constexpr std::chrono::nanoseconds bytesTime(std::size_t count)
    {
        return std::chrono::nanoseconds(static_cast<std::int64_t>(count) * bitsPerByte *
                                        1'000'000'000 / baud);
    }

    /// Bytes from the program were seen now; the moment when the last one has passed. Handing bytes
    /// from process to process costs time that a real line does not take: a command seen within a
    /// byte's time after the end of a reply counts as sent right at that end.
    Time received(Time now, std::size_t count)
    {
        const bool rightAfterReply = now >= replyEnd_ && now - replyEnd_ <= bytesTime(1);
        commandEnd_ = std::max(commandEnd_, rightAfterReply ? replyEnd_ : now) + bytesTime(count);
        return commandEnd_;
    }

    /// Books the unit's side of the line for so many bytes from the earliest moment on; the moment
    /// when the first one begins. Byte i (from 0) is over at begin + bytesTime(i + 1).
    Time book(Time earliest, std::size_t count)
    {
        const Time begin = std::max(replyEnd_, earliest);
        replyEnd_ = begin + bytesTime(count);
        return begin;
    }

private:
    Time commandEnd_{};
    Time replyEnd_{};
};

} // namespace sim
