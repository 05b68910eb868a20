// The program's end of a simulated line, over POSIX.
#include "TerminalPeer.h"

#include <algorithm>
#include <array>

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

int millisecondsUntil(Clock::time_point deadline)
{
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    return static_cast<int>(std::max<std::int64_t>(left.count(), 0));
}

} // namespace

TerminalPeer::TerminalPeer(const std::string &device)
    : mTerminal(::open(device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC))
{
}

TerminalPeer::~TerminalPeer()
{
    close();
}

void TerminalPeer::close()
{
    if (mTerminal >= 0)
        ::close(mTerminal);
    mTerminal = -1;
}

void TerminalPeer::write(const std::string &bytes) const
{
    [[maybe_unused]] const auto written = ::write(mTerminal, bytes.data(), bytes.size());
}

bool TerminalPeer::waitForBytes(Clock::time_point deadline)
{
    pollfd descriptor{mTerminal, POLLIN, 0};
    if (poll(&descriptor, 1, millisecondsUntil(deadline)) <= 0)
        return false;
    std::array<char, 4096> bytes{};
    const auto count = ::read(mTerminal, bytes.data(), bytes.size());
    if (count <= 0)
        return false;
    mPending.append(bytes.data(), static_cast<std::size_t>(count));
    return true;
}

std::string TerminalPeer::readLine(std::chrono::milliseconds timeout)
{
    const auto deadline = Clock::now() + timeout;
    auto end = mPending.find('\r');
    while (end == std::string::npos && waitForBytes(deadline))
        end = mPending.find('\r');
    std::string line = mPending.substr(0, end == std::string::npos ? end : end + 1);
    mPending.erase(0, line.size());
    return line;
}

std::string TerminalPeer::read(std::size_t count, std::chrono::milliseconds timeout)
{
    const auto deadline = Clock::now() + timeout;
    while (mPending.size() < count && waitForBytes(deadline)) {
    }
    std::string bytes = mPending.substr(0, count);
    mPending.erase(0, bytes.size());
    return bytes;
}

std::string TerminalPeer::exchange(const std::string &command)
{
    write(command + '\r');
    return readLine();
}

bool TerminalPeer::waitForHangUp() const
{
    pollfd descriptor{mTerminal, 0, 0};
    return poll(&descriptor, 1, 5000) == 1 && (descriptor.revents & POLLHUP);
}
