// What a simulated line makes of a command: who answers it, and which fault befalls the reply.
#include "sim/LineWorker.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace sim {

namespace {

using namespace std::chrono_literals;

constexpr auto splitGap = 20ms;
constexpr std::size_t splitSize = 3;
constexpr std::size_t endlessBytes = 65'536;
constexpr std::size_t endlessPiece = 256;
constexpr auto endlessPause = 5ms;

// Faults that keep a command from the units.
bool keepsAway(Fault fault)
{
    return fault == Fault::Echo || fault == Fault::PermissionDenied || fault == Fault::Unplug;
}

bool befalls(Fault fault, const std::optional<std::string> &reply)
{
    if (keepsAway(fault) || fault == Fault::Silence)
        return true;
    if (fault == Fault::Unlocked || fault == Fault::WrongUnitWord)
        return reply && falsified(fault, *reply) != *reply;
    return reply.has_value();
}

} // namespace

void LineWorker::handle(const std::string &command, Time commandEnd)
{
    if (endlessLeft_ > 0) { // the next command ends the babble
        endlessLeft_ = 0;
        outbox_.clear();
    }
    const auto listener = shared([&](Shared &s) {
        s.commands.push_back(command);
        return s.listener;
    });
    if (listener)
        listener(false, command);
    Fault fault = faultFor(command);
    const auto reply = keepsAway(fault) ? std::nullopt : replyTo(command);
    fault = befalls(fault, reply) ? useFault(fault) : Fault::None;
    shared([&](Shared &s) {
        s.handled = s.commands.size();
        changed_.notify_all();
    });
    if (reply || keepsAway(fault))
        dispatch(fault, command, reply.value_or(std::string()), commandEnd);
}

// All units hear a command; the first reply goes out.
std::optional<std::string> LineWorker::replyTo(const std::string &command) const
{
    const auto [responder, units] =
        shared([](const Shared &s) { return std::pair(s.responder, s.units); });
    if (responder)
        return responder(command);
    std::optional<std::string> reply;
    for (const auto &unit : units) {
        auto answer = unit->answer(command);
        if (!reply)
            reply = std::move(answer);
    }
    return reply || units.empty() ? reply : SimulatedUnit::answerForTheLine(command);
}

Fault LineWorker::faultFor(const std::string &command) const
{
    return shared([&](const Shared &s) {
        const bool meant = command.starts_with(s.faultPrefix) && s.faultTimes != 0 &&
                           (s.fault != Fault::PermissionDenied || looksLikeSetting(command));
        return meant ? s.fault : Fault::None;
    });
}

// Counts one use; a fault that was replaced in the meantime still befalls this reply.
Fault LineWorker::useFault(Fault fault) const
{
    shared([&](Shared &s) {
        if (s.fault == fault && s.faultTimes > 0)
            --s.faultTimes;
    });
    return fault;
}

void LineWorker::dispatch(Fault fault, const std::string &command, const std::string &reply,
                          Time end)
{
    const auto [terminator, lateBy, listener] =
        shared([](const Shared &s) { return std::tuple(s.terminator, s.lateBy, s.listener); });
    std::string bytes = falsified(fault, reply) + terminator;
    switch (fault) {
    case Fault::Silence:
        return;
    case Fault::Unplug:
        hangUp();
        return;
    case Fault::Endless:
        endlessLeft_ = endlessBytes;
        endlessDue_ = end;
        return;
    case Fault::Echo:
        bytes = command + "\r";
        break;
    default:
        break;
    }
    if (listener)
        listener(true, bytes.substr(0, bytes.find_last_not_of("\r\n") + 1));
    if (fault == Fault::SplitReply)
        postSplit(end, bytes);
    else
        post(fault == Fault::LateReply ? end + lateBy : end, bytes);
}

void LineWorker::post(Time earliest, const std::string &bytes)
{
    if (shared([](const Shared &s) { return s.paced; }))
        outbox_.postPaced(clock_, earliest, bytes);
    else
        outbox_.post(earliest, bytes);
}

void LineWorker::postSplit(Time earliest, const std::string &bytes)
{
    for (std::size_t at = 0; at < bytes.size(); at += splitSize) {
        post(earliest, bytes.substr(at, splitSize));
        earliest += splitGap;
    }
}

// A piece at a time and only when the last one has gone, so that a program that does not read
// neither blocks the line nor fills the memory.
void LineWorker::continueEndless()
{
    const Time now = WireClock::Clock::now();
    if (endlessLeft_ == 0 || !outbox_.empty() || now < endlessDue_)
        return;
    const std::size_t count = std::min(endlessLeft_, endlessPiece);
    post(now, std::string(count, '*'));
    endlessLeft_ -= count;
    endlessDue_ = now + endlessPause;
}

} // namespace sim
