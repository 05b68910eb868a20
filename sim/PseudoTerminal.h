// A pseudo-terminal: the program opens its slave side like a serial port, the simulated line has
// the master side.
#pragma once

#include <cstddef>
#include <string>

namespace sim {

class PseudoTerminal
{
public:
    PseudoTerminal(); ///< raw, without echo; throws std::system_error
    ~PseudoTerminal();
    PseudoTerminal(const PseudoTerminal &) = delete;
    PseudoTerminal &operator=(const PseudoTerminal &) = delete;

    const std::string &device() const { return device_; }
    int master() const { return master_; } ///< -1 after a hang-up
    int watch() const { return watch_; }   ///< readable when the program opened or closed; or -1
    bool isOpen() const { return master_ >= 0; }

    std::string read() const;                          ///< what is there; never waits
    std::size_t write(const std::string &bytes) const; ///< how many went; never waits
    /// The device vanishes for the program; its name is nobody else's until this object ends.
    void hangUp();
    /// Counts who has the device open. When the last one has left, a lock that it put on the device
    /// goes with it, as on a real port: the own slave side, kept open, would preserve it for ever.
    void readWatch();
    int openCount() const { return openCount_; } ///< other than the own slave side

private:
    void closeAll();

    std::string device_;
    int master_ = -1;
    int slave_ = -1;
    int watch_ = -1;
    int openCount_ = 0;
};

} // namespace sim
