// The program's end of a simulated line in these tests: a terminal opened and read with plain
// system calls, every wait with a deadline.
#pragma once

#include <chrono>
#include <string>

class TerminalPeer
{
public:
    explicit TerminalPeer(const std::string &device);
    ~TerminalPeer();
    TerminalPeer(const TerminalPeer &) = delete;
    TerminalPeer &operator=(const TerminalPeer &) = delete;

    bool isOpen() const { return mTerminal >= 0; }
    int descriptor() const { return mTerminal; }
    void close();
    void write(const std::string &bytes) const;
    /// Bytes up to and including the first carriage return; what came, when the time is over.
    std::string readLine(std::chrono::milliseconds timeout = std::chrono::seconds(5));
    /// Bytes until there are so many or the time is over.
    std::string read(std::size_t count, std::chrono::milliseconds timeout);
    /// Sends the command with a carriage return and reads one line.
    std::string exchange(const std::string &command);
    /// Whether the terminal reports that it was hung up, within five seconds.
    bool waitForHangUp() const;

private:
    bool waitForBytes(std::chrono::steady_clock::time_point deadline);

    int mTerminal = -1;
    std::string mPending;
};
