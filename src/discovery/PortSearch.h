// One search for units: probes serial ports, tells units from everything else that answers, and
// reports what it finds by signals. It holds all of its state and can be cancelled at any time;
// what the windows do about it is the business of whoever runs it.
#pragma once

#include "discovery/clsSeeker.h"

#include <QList>
#include <QObject>
#include <QString>

#include <cstdint>
#include <memory>

// What answers on a port.
enum class ProbeResult {
    UnitFound = 0,
    Loopback = 1,   // echoes the query
    AnswersOne = 2, // "1"
    AORRadio = 3,
    Prompt = 4, // "?>"
    Silent = 5,
    Other = 6,
};

class PortSearch : public QObject
{
    Q_OBJECT

public:
    enum class Outcome {
        Found,     // at least one unit
        Nothing,   // every port was looked at
        Cancelled, // no unit before it was broken off
    };

    static constexpr std::int16_t lastAddress = 8; // of a shared line

    PortSearch();

    // Every port 1 to 255, also after units were found: a site may have several.
    void searchAllPorts();
    // Addresses 1 to 8 on one port.
    void searchAddressesOn(std::int16_t port);
    // One port at one address; 0 is a unit without an address.
    void probe(std::int16_t port, std::int16_t address);
    // On the port that the seeker has open.
    ProbeResult identify(std::int16_t address);

    // Ends the search after the port it is at, and a wait in progress at once.
    void cancel();
    bool isCancelled() const { return m_cancelled; }

    Outcome outcome() const;
    // A port with a device that could not be opened, and why: the cause and its remedy.
    struct Refused
    {
        std::int16_t port;
        QString reason;
    };
    const QList<Refused> &refused() const { return m_refused; }
    // Something was asked without an address that may be a line of addressed units: they say
    // nothing before they are addressed, and some adapters echo.
    bool mayHaveAddressedUnits() const { return m_mayHaveAddressed; }

    // The last port that was looked at echoes what it is sent.
    bool endedAtLoopback() const { return m_last == ProbeResult::Loopback; }

    // The seeker lets go of its port and ends; the search has looked at its last port.
    void releaseSeeker() { m_seeker.reset(); }
    std::shared_ptr<clsSeeker> seeker() const { return m_seeker; }

signals:
    // A port, or an address on it, is looked at now: the i-th of n that exist. Numbers without a
    // device come past too and do not count.
    void LookingAt(qint16 port, qint16 address, int i, int n);
    // The port is free again: the unit may be connected from here.
    void UnitFound(qint16 port, qint16 address);
    void LoopbackFound(qint16 port);
    void LookedAt(qint16 port, qint16 address);
    void Cancelled();

private:
    bool mustStop() const;
    void act(std::int16_t port, std::int16_t address);

    std::shared_ptr<clsSeeker> m_seeker;
    ProbeResult m_last = ProbeResult::Silent;
    QList<Refused> m_refused;
    bool m_mayHaveAddressed = false;
    bool m_found = false;
    bool m_cancelled = false;
    int m_place = 1;
    int m_places = 1;
};
