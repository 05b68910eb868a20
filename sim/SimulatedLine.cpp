// The calls of a simulated line, handed to its worker.
#include "sim/SimulatedLine.h"

#include "sim/LineWorker.h"

#include <stdexcept>
#include <utility>

namespace sim {

namespace {

constexpr std::size_t mostUnits = 8;

} // namespace

using Shared = LineWorker::Shared;

SimulatedLine::SimulatedLine(std::unique_ptr<Wire> wire)
    : worker_(std::make_unique<LineWorker>(std::move(wire)))
{
}
SimulatedLine::~SimulatedLine() = default;

std::string SimulatedLine::device() const
{
    return worker_->device();
}

void SimulatedLine::addUnit(std::shared_ptr<SimulatedUnit> unit)
{
    worker_->shared([&](Shared &s) {
        if (s.units.size() == mostUnits)
            throw std::length_error("a line has room for eight units");
        s.units.push_back(std::move(unit));
    });
}

void SimulatedLine::setResponder(Responder responder)
{
    worker_->shared([&](Shared &s) { s.responder = std::move(responder); });
}

void SimulatedLine::setListener(Listener listener)
{
    worker_->shared([&](Shared &s) { s.listener = std::move(listener); });
}

void SimulatedLine::setPaced(bool paced)
{
    worker_->shared([&](Shared &s) { s.paced = paced; });
}

void SimulatedLine::setTerminator(std::string terminator)
{
    worker_->shared([&](Shared &s) { s.terminator = std::move(terminator); });
}

void SimulatedLine::setFault(Fault fault, std::string commandPrefix, int times)
{
    worker_->shared([&](Shared &s) {
        s.fault = fault;
        s.faultPrefix = std::move(commandPrefix);
        s.faultTimes = times;
    });
}

void SimulatedLine::setLateBy(std::chrono::milliseconds lateBy)
{
    worker_->shared([&](Shared &s) { s.lateBy = lateBy; });
}

std::vector<std::string> SimulatedLine::commands() const
{
    return worker_->shared([](const Shared &s) { return s.commands; });
}

void SimulatedLine::clearCommands()
{
    worker_->shared([](Shared &s) {
        s.commands.clear();
        s.handled = 0;
    });
}

bool SimulatedLine::waitForCommands(std::size_t count, std::chrono::milliseconds timeout) const
{
    return worker_->waitForCommands(count, timeout);
}

std::size_t SimulatedLine::bytesReceived() const
{
    return worker_->shared([](const Shared &s) { return s.bytesReceived; });
}

void SimulatedLine::send(const std::string &bytes)
{
    worker_->send(bytes);
}

void SimulatedLine::unplug()
{
    worker_->unplug();
}

std::uint64_t SimulatedLine::bitsOnWire() const
{
    return worker_->shared([](const Shared &s) {
        return static_cast<std::uint64_t>(WireClock::bitsPerByte) * (s.bytesReceived + s.bytesSent);
    });
}

} // namespace sim
