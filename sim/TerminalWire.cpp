// The wire of a simulated line that is a pseudo-terminal.
#include "sim/LineSpec.h"
#include "sim/PseudoTerminal.h"
#include "sim/Wire.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace sim {

namespace {

using namespace std::chrono_literals;

timespec toTimespec(std::chrono::nanoseconds span)
{
    span = std::max(span, 0ns);
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(span);
    return {seconds.count(), (span - seconds).count()};
}

void drain(int descriptor)
{
    std::array<char, 64> bytes{};
    while (::read(descriptor, bytes.data(), bytes.size()) > 0) {
    }
}

class TerminalWire : public Wire
{
public:
    TerminalWire();
    ~TerminalWire() override;

    std::string device() const override { return terminal_.device(); }
    bool isOpen() const override { return terminal_.isOpen(); }
    void hangUp() override { terminal_.hangUp(); }
    std::string read() override { return terminal_.read(); }
    std::size_t write(const std::string &bytes) override { return terminal_.write(bytes); }
    void wait(std::optional<Time> until, bool bytesLeft) override;
    void wake() override;

private:
    PseudoTerminal terminal_;
    std::array<int, 2> wakeEnds_{-1, -1};
};

TerminalWire::TerminalWire()
{
    if (pipe2(wakeEnds_.data(), O_NONBLOCK | O_CLOEXEC) != 0)
        throw std::system_error(errno, std::generic_category(), "pipe2");
}

TerminalWire::~TerminalWire()
{
    for (const int end : wakeEnds_)
        ::close(end);
}

void TerminalWire::wait(std::optional<Time> until, bool bytesLeft)
{
    std::array<pollfd, 3> descriptors{
        {{wakeEnds_[0], POLLIN, 0},
         {terminal_.master(), static_cast<short>(bytesLeft ? POLLIN | POLLOUT : POLLIN), 0},
         {terminal_.watch(), POLLIN, 0}}}; // negative ones are passed over
    const timespec span = until ? toTimespec(*until - WireClock::Clock::now()) : timespec{};
    ppoll(descriptors.data(), descriptors.size(), until ? &span : nullptr, nullptr);
    if (descriptors[0].revents)
        drain(wakeEnds_[0]);
    if (descriptors[2].revents)
        terminal_.readWatch();
}

void TerminalWire::wake()
{
    // A full pipe has woken the thread already.
    [[maybe_unused]] const ssize_t written = ::write(wakeEnds_[1], "", 1);
}

} // namespace

std::unique_ptr<Wire> makeTerminalWire()
{
    return std::make_unique<TerminalWire>();
}

SimulatedLine::SimulatedLine() : SimulatedLine(makeTerminalWire()) {}

std::unique_ptr<SimulatedLine> makeLine(const LineSpec &spec)
{
    return makeLine(spec, makeTerminalWire());
}

} // namespace sim
