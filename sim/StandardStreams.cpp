// The wire over the standard streams. The main thread reads, for a read cannot be waited for
// together with anything else on every system; the line's own thread writes.
#include "sim/StandardStreams.h"

#include <algorithm>
#include <array>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <utility>

#include <unistd.h>
#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

namespace sim {

namespace {

// Bytes kept for a line that does not come to reading them; more are lost, as on a serial line.
constexpr std::size_t mostUnread = 65'536;
constexpr int input = 0;
constexpr int output = 1;

class StreamWire : public Wire
{
public:
    std::string device() const override { return "standard input and output"; }
    bool isOpen() const override { return true; }
    // The process is the port: it goes, and the program sees that.
    void hangUp() override { std::_Exit(0); }

    std::string read() override;
    std::size_t write(const std::string &bytes) override;
    void wait(std::optional<Time> until, bool bytesLeft) override;
    void wake() override;

    void arrived(const char *bytes, std::size_t count);

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::string unread_;
    bool awake_ = false;
};

std::string StreamWire::read()
{
    const std::lock_guard lock(mutex_);
    return std::exchange(unread_, {});
}

std::size_t StreamWire::write(const std::string &bytes)
{
    std::size_t done = 0;
    while (done < bytes.size()) {
        const auto count = ::write(output, bytes.data() + done, bytes.size() - done);
        if (count <= 0)
            hangUp(); // nobody is there any more
        done += static_cast<std::size_t>(count);
    }
    return done;
}

void StreamWire::wait(std::optional<Time> until, bool /*bytesLeft*/)
{
    std::unique_lock lock(mutex_);
    const auto isDue = [this] { return awake_ || !unread_.empty(); };
    if (until)
        changed_.wait_until(lock, *until, isDue);
    else
        changed_.wait(lock, isDue);
    awake_ = false;
}

void StreamWire::wake()
{
    const std::lock_guard lock(mutex_);
    awake_ = true;
    changed_.notify_all();
}

void StreamWire::arrived(const char *bytes, std::size_t count)
{
    const std::lock_guard lock(mutex_);
    unread_.append(bytes, std::min(count, mostUnread - unread_.size()));
    changed_.notify_all();
}

// Else a carriage return and a line feed would become one character of a text.
void keepBytes()
{
#ifdef _WIN32
    _setmode(input, _O_BINARY);
    _setmode(output, _O_BINARY);
#endif
}

} // namespace

void serveStandardStreams(const LineSpec &spec, const SimulatedLine::Listener &listener)
{
    keepBytes();
    auto wire = std::make_unique<StreamWire>();
    StreamWire &end = *wire;
    const auto line = makeLine(spec, std::move(wire));
    line->setListener(listener);
    std::array<char, 4096> bytes{};
    for (auto count = ::read(input, bytes.data(), bytes.size()); count > 0;
         count = ::read(input, bytes.data(), bytes.size()))
        end.arrived(bytes.data(), static_cast<std::size_t>(count));
    // Not by way of the line's end: its thread may wait for a peer that takes nothing more.
    std::_Exit(0);
}

} // namespace sim
