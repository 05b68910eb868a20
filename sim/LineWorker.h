// The thread behind a simulated line: it waits for bytes, for moments that are due and for calls,
// and does all reading and writing.
#pragma once

#include "sim/Outbox.h"
#include "sim/SimulatedLine.h"
#include "sim/Wire.h"

#include <condition_variable>
#include <mutex>
#include <thread>

namespace sim {

class LineWorker
{
public:
    explicit LineWorker(std::unique_ptr<Wire> wire);
    ~LineWorker();
    LineWorker(const LineWorker &) = delete;
    LineWorker &operator=(const LineWorker &) = delete;

    std::string device() const { return wire_->device(); }
    void send(const std::string &bytes);
    void unplug();
    bool waitForCommands(std::size_t count, std::chrono::milliseconds timeout) const;

    // What follows is shared between the line's owner and the thread; lock the mutex.
    struct Shared
    {
        std::vector<std::shared_ptr<SimulatedUnit>> units;
        SimulatedLine::Responder responder;
        SimulatedLine::Listener listener;
        std::string terminator = "\r";
        bool paced = false;
        Fault fault = Fault::None;
        std::string faultPrefix;
        int faultTimes = -1;
        std::chrono::milliseconds lateBy{300};
        std::vector<std::string> commands;
        std::size_t handled = 0; ///< so many of the commands have been carried out
        std::size_t bytesReceived = 0;
        std::size_t bytesSent = 0;
    };
    template <typename Access> auto shared(Access access) const
    {
        const std::lock_guard lock(mutex_);
        return access(shared_);
    }

private:
    using Time = WireClock::Time;

    void run();
    void sleep();
    void receive(const std::string &bytes, Time now);
    void handle(const std::string &command, Time commandEnd);
    std::optional<std::string> replyTo(const std::string &command) const;
    Fault faultFor(const std::string &command) const;
    Fault useFault(Fault fault) const;
    void dispatch(Fault fault, const std::string &command, const std::string &reply, Time end);
    void post(Time earliest, const std::string &bytes);
    void postSplit(Time earliest, const std::string &bytes);
    void continueEndless();
    void writeDue();
    void hangUp();

    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    mutable Shared shared_;
    std::vector<std::string> unsolicited_;
    bool ending_ = false;
    bool unplugging_ = false;
    bool unplugged_ = false;

    // The thread's own.
    std::unique_ptr<Wire> wire_;
    WireClock clock_;
    Outbox outbox_;
    std::string input_;
    std::size_t endlessLeft_ = 0;
    Time endlessDue_{};

    std::thread thread_; // the last to be made
};

} // namespace sim
