// The throw-away probe that finds out what, if anything, answers on a serial port. It has a port
// object of its own and never changes the state of a unit.
#pragma once

#include "port/clsCommPort.h"

#include <QString>

#include <cstdint>
#include <memory>

class clsKeldoX;

class clsSeeker
{
public:
    clsSeeker();
    ~clsSeeker(); // closes the port
    clsSeeker(const clsSeeker &) = delete;
    clsSeeker &operator=(const clsSeeker &) = delete;

    // Does nothing; callers call it right after making a seeker.
    void Construct() {}

    // Opens the port. False only for a port in error: one that another program holds is True, and
    // simply yields no reply.
    bool Init(std::int16_t port);
    void ClosePort();

    std::shared_ptr<clsKeldoX> KX() const { return m_unit; }
    void setKX(std::shared_ptr<clsKeldoX> unit) { m_unit = std::move(unit); }
    std::int16_t address() const { return m_address; }
    void setAddress(std::int16_t address) { m_address = address; }

    // Sends the line and gives the reply without trailing CR and LF; after a time-out of 1900 ms
    // whatever had arrived.
    QString deviceWrite(const QString &command);
    QString GetID();      // *ID?; empty on a closed port
    bool ItsAnAORRadio(); // ID; always False
    void Unlisten();      // >UNLISTEN
    // Releases the line and addresses one unit with >LISTENnn. 0 means a unit without an address:
    // True, and nothing is sent. False on a closed port.
    bool Listen(std::int16_t address);

    clsCommPort &ComPort() { return *m_port; }

private:
    // Shared, because whoever waits on the port in deviceWrite keeps it.
    std::shared_ptr<clsCommPort> m_port;
    std::shared_ptr<clsKeldoX> m_unit;
    std::int16_t m_address = 0;
};
