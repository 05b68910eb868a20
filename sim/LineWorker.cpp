// Waiting, reading and writing of a simulated line.
#include "sim/LineWorker.h"

#include <algorithm>

#ifdef __linux__
#include <sys/prctl.h>
#endif

namespace sim {

namespace {

using namespace std::chrono_literals;

// A pseudo-terminal does not always tell that it has room again.
constexpr auto blockedRetry = 50ms;
constexpr std::size_t longestCommand = 65'536;

// The kernel rounds waits up by 50 microseconds unless asked not to: a tenth of a byte.
void wakeOnTime()
{
#ifdef __linux__
    prctl(PR_SET_TIMERSLACK, 1UL);
#endif
}

} // namespace

LineWorker::LineWorker(std::unique_ptr<Wire> wire) : wire_(std::move(wire))
{
    thread_ = std::thread([this] { run(); });
}

LineWorker::~LineWorker()
{
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
    }
    wire_->wake();
    thread_.join();
}

void LineWorker::send(const std::string &bytes)
{
    {
        const std::lock_guard lock(mutex_);
        unsolicited_.push_back(bytes);
    }
    wire_->wake();
}

void LineWorker::unplug()
{
    if (std::this_thread::get_id() == thread_.get_id()) {
        hangUp();
        return;
    }
    std::unique_lock lock(mutex_);
    unplugging_ = true;
    wire_->wake();
    changed_.wait(lock, [this] { return unplugged_; });
}

bool LineWorker::waitForCommands(std::size_t count, std::chrono::milliseconds timeout) const
{
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, timeout, [&] { return shared_.handled >= count; });
}

void LineWorker::hangUp()
{
    wire_->hangUp();
    outbox_.clear();
    endlessLeft_ = 0;
    const std::lock_guard lock(mutex_);
    unplugged_ = true;
    changed_.notify_all();
}

void LineWorker::run()
{
    wakeOnTime();
    while (true) {
        sleep();
        // Taken before the calls: whoever called before the program wrote stays ahead of it.
        const std::string input = wire_->read();
        const Time now = WireClock::Clock::now();
        std::vector<std::string> unsolicited;
        bool unplugging = false;
        {
            const std::lock_guard lock(mutex_);
            if (ending_)
                return;
            unplugging = unplugging_ && !unplugged_;
            unsolicited.swap(unsolicited_);
        }
        for (const std::string &bytes : unsolicited)
            post(now, bytes);
        if (unplugging)
            hangUp();
        else if (!input.empty())
            receive(input, now);
        continueEndless();
        writeDue();
    }
}

// Until a byte, a call or the next deadline.
void LineWorker::sleep()
{
    const bool blocked = !outbox_.ready().empty();
    std::optional<Time> until = outbox_.nextDue();
    const auto atLatest = [&](Time time) { until = until ? std::min(*until, time) : time; };
    if (blocked)
        atLatest(WireClock::Clock::now() + blockedRetry);
    else if (endlessLeft_ > 0)
        atLatest(endlessDue_);
    wire_->wait(until, blocked);
}

void LineWorker::receive(const std::string &bytes, Time now)
{
    const bool paced = shared([&](Shared &s) {
        s.bytesReceived += bytes.size();
        return s.paced;
    });
    const Time end = paced ? clock_.received(now, bytes.size()) : now;
    input_ += bytes;
    for (auto cr = input_.find('\r'); cr != std::string::npos; cr = input_.find('\r')) {
        std::string command = input_.substr(0, cr);
        input_.erase(0, cr + 1);
        if (command.starts_with('\n')) // belongs to the carriage return before it
            command.erase(0, 1);
        handle(command, paced ? end - WireClock::bytesTime(input_.size()) : now);
    }
    if (input_.size() > longestCommand)
        input_.clear();
}

void LineWorker::writeDue()
{
    outbox_.collect(WireClock::Clock::now());
    const std::size_t written = wire_->write(outbox_.ready());
    outbox_.ready().erase(0, written);
    shared([&](Shared &s) { s.bytesSent += written; });
    if (!wire_->isOpen())
        outbox_.clear();
}

} // namespace sim
