// The port search.
#include "discovery/PortSearch.h"

#include "core/EventLog.h"
#include "core/ResumeNext.h"
#include "platform/EventQueue.h"
#include "platform/PortDirectory.h"

static const char searchSource[] = "SearchPorts";

PortSearch::PortSearch() : m_seeker(std::make_shared<clsSeeker>())
{
    m_seeker->Construct();
}

bool PortSearch::mustStop() const
{
    return m_cancelled || EventQueue::ending();
}

void PortSearch::cancel()
{
    m_cancelled = true;
    if (const auto seeker = m_seeker)
        seeker->ClosePort();
    emit Cancelled();
}

PortSearch::Outcome PortSearch::outcome() const
{
    if (m_found)
        return Outcome::Found;
    return m_cancelled ? Outcome::Cancelled : Outcome::Nothing;
}

void PortSearch::searchAllPorts()
{
    PortDirectory &directory = PortDirectory::instance();
    m_place = 0;
    m_places = 0;
    for (int port = 1; port <= PortDirectory::lastNumber; ++port)
        m_places += directory.isPresent(port) ? 1 : 0;
    for (std::int16_t port = 1; port <= PortDirectory::lastNumber && !mustStop(); ++port) {
        m_place += directory.isPresent(port) ? 1 : 0;
        probe(port, 0);
    }
}

void PortSearch::searchAddressesOn(std::int16_t port)
{
    m_places = lastAddress;
    for (std::int16_t address = 1; address <= lastAddress && !mustStop(); ++address) {
        m_place = address;
        probe(port, address);
    }
}

void PortSearch::probe(std::int16_t port, std::int16_t address)
{
    const auto seeker = m_seeker;
    bool isOpen = false;
    m_last = ProbeResult::Silent;
    resumeNext(
        searchSource, [&] { emit LookingAt(port, address, m_place, m_places); },
        [&] {
            isOpen = seeker->Init(port);
            const QString reason = seeker->ComPort().OpenFailure();
            if (!reason.isEmpty())
                m_refused.append({port, reason});
        },
        [&] {
            if (isOpen)
                act(port, address);
        },
        [&] { seeker->ClosePort(); }, [&] { emit LookedAt(port, address); });
}

void PortSearch::act(std::int16_t port, std::int16_t address)
{
    const bool isOpen = m_seeker->ComPort().IsOpen();
    m_last = identify(address);
    if (isOpen && address == 0 && !m_cancelled &&
        (m_last == ProbeResult::Silent || m_last == ProbeResult::Loopback))
        m_mayHaveAddressed = true;
    switch (m_last) {
    case ProbeResult::UnitFound:
        m_found = true;
        m_seeker->ClosePort();
        emit UnitFound(port, address);
        break;
    case ProbeResult::Loopback:
        emit LoopbackFound(port);
        logEvent(QStringLiteral("SearchComPorts"),
                 QStringLiteral("FOUND A LOOPBACK ADAPTOR (SOMETHING THAT ECHOS WHAT IT'S SENT) "
                                "ON COM%1")
                     .arg(port));
        break;
    default:
        logEvent(
            QStringLiteral("SearchComPorts"),
            QStringLiteral(" COM%1 CAN BE OPENED, BUT DOES NOT RESPOND LIKE AN KELDO-X").arg(port));
        break;
    }
}

ProbeResult PortSearch::identify(std::int16_t address)
{
    const auto seeker = m_seeker;
    if (!seeker->Listen(address))
        return ProbeResult::Silent;
    // The order is part of the design, although the seeker strips the CR LF that two of the tests
    // look for.
    const QString reply = seeker->GetID().toUpper();
    if (reply == QLatin1String("KELDO-X") || reply == QLatin1String("TOVIN-R"))
        return ProbeResult::UnitFound;
    if (reply == QLatin1String("*ID?"))
        return ProbeResult::Loopback;
    if (reply == QLatin1String("1"))
        return ProbeResult::AnswersOne;
    if (reply == QLatin1String("\r\n"))
        return seeker->ItsAnAORRadio() ? ProbeResult::AORRadio : ProbeResult::UnitFound;
    if (reply == QLatin1String("?>"))
        return ProbeResult::Prompt;
    return reply.isEmpty() ? ProbeResult::Silent : ProbeResult::Other;
}
