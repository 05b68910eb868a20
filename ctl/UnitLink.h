// The unit at the end of one port, for one command line: opened, addressed and identified, and what
// kept it from answering well in words for whoever typed the command. Unlike the program it reads
// in nothing that was not asked for: a setting takes a handful of exchanges.
#pragma once

#include "ctl/Failure.h"
#include "ctl/Request.h"
#include "ctl/Wire.h"
#include "device/clsKeldoX.h"

#include <memory>
#include <optional>

class UnitLink
{
public:
    explicit UnitLink(const Request &request);
    ~UnitLink(); // closes the port

    // Opens the port and addresses the unit. Fails for a port that is not to be had.
    void open();
    // And identifies it: fails for whatever else is at the other end.
    void connect();

    clsKeldoX &unit() { return *m_unit; }
    const Wire &wire() const { return m_wire; }
    QString identity() const { return m_identity; }
    bool isLost() const { return m_lost; } // the port hung up

    // From here on is judged what comes.
    void begin();
    // Whoever looks again and again leaves nothing unsent because the unit was silent before.
    void keepTrying() { m_keepsTrying = true; }
    // Every command since then was answered as it should.
    bool isGood() const;
    // Why it was not, for example when "agc was set".
    Failure failure(const QString &what) const;

private:
    struct Complaint
    {
        QString text;
        QString reply;
    };

    QString portName() const;
    void hear(const QString &text);
    void leaveUnsentAfterSilence();
    Failure noAnswer() const;

    std::shared_ptr<clsKeldoX> m_unit;
    Wire m_wire;
    int m_timeout; // ms
    std::int16_t m_address;
    QString m_identity;
    std::optional<Complaint> m_complaint; // the first one
    bool m_lost = false;
    bool m_keepsTrying = false;
};
