// The line out and back, and the two shapes of property over it.
#include "device/Exchange.h"

#include "core/DebugSwitches.h"
#include "core/EventLog.h"
#include "core/Message.h"
#include "core/TextNumbers.h"
#include "platform/RunTimeError.h"

static QString logName()
{
    return QStringLiteral("clsKeldoX");
}

std::shared_ptr<clsCommPort> Exchange::commPort()
{
    if (!m_port) {
        m_port = std::make_shared<clsCommPort>();
        QObject::connect(m_port.get(), &clsCommPort::HungUp, &m_events, [this] { onHungUp(); });
    }
    return m_port;
}

void Exchange::onHungUp()
{
    const auto unit = keepAlive();
    finish(UnitEvents::BadReply);
    emit m_events.LinkLost();
}

bool Exchange::PortIsOpen()
{
    return m_connection == SerialPort && commPort()->IsOpen();
}

Reply Exchange::send(const QString &command)
{
    const auto unit = keepAlive();
    Reply reply;
    bool isOpen = m_connection != SerialPort;
    resumeNext(
        "clsKeldoX.deviceWrite", [this] { emit m_events.AboutToExchange(); },
        [&] {
            if (m_connection != SerialPort)
                return;
            const auto port = commPort();
            isOpen = port->IsOpen();
            if (!isOpen)
                return;
            logEvent(logName(), QStringLiteral(" sending ") + command +
                                    QStringLiteral(" to com port %1").arg(port->PortNumber()));
            reply.complete = port->WriteAndWaitForCr(command + QLatin1Char('\r'));
            reply.text = port->Buffer();
            port->ClearBuffer();
        });
    if (!isOpen)
        return {};
    while (reply.text.endsWith(QLatin1Char(' ')) || reply.text.endsWith(QLatin1Char('\n')) ||
           reply.text.endsWith(QLatin1Char('\r')))
        reply.text.chop(1);
    m_lastReply = reply.text;
    if (reply.complete)
        logEvent(logName(), QStringLiteral(" received ") + reply.text);
    else
        logEvent(QStringLiteral("Keldo-X"), QStringLiteral(" timed out ") + reply.text);
    return reply;
}

bool Exchange::mayAsk(const std::function<bool()> &isOffered)
{
    return PortIsOpen() && (!isOffered || isOffered());
}

bool Exchange::givesMember(Unasked unasked) const
{
    return unasked == GivesLastReading || (unasked == GivesSetUpValue && m_setup.initialized);
}

void Exchange::ask(const Query &asked, const Test &test)
{
    reportAndEnd(asked.source, [&] {
        const Reply reply = send(QString::fromLatin1(asked.command));
        const bool good = isGood(reply, test);
        if (!good)
            m_setup.miss();
        announce(judge(reply, good, asked.message, asked.mayBeRefused), asked.event,
                 asked.announcing);
    });
}

std::int32_t Exchange::set(const Setting &setting)
{
    const auto unit = keepAlive();
    std::int32_t status = m_lastStatus;
    reportAndEnd(setting.source, [&] {
        if (!mayAsk(setting.isOffered))
            return;
        const Reply reply = send(setting.line);
        status = judge(reply, isGood(reply, setting.isGood), setting.message, setting.mayBeRefused);
        announce(status, setting.event, setting.announcing);
    });
    return status;
}

void Exchange::writeFactory(const char *source, const QString &command, double value)
{
    run(source, [&] { send(command + numberToTextWithBlank(value)); });
}

bool Exchange::isGood(const Reply &reply, const Test &test)
{
    try {
        return test(reply.text);
    } catch (const RunTimeError &) {
        return false;
    }
}

std::int32_t Exchange::judge(const Reply &reply, bool good, const char *message, bool mayBeRefused)
{
    if (good)
        return keep(UnitEvents::Good);
    if (!mayBeRefused || !ReplyText::isRefused(reply.text))
        return reject(message);
    keep(UnitEvents::Refused);
    emit m_events.GetPassword();
    return UnitEvents::Refused;
}

std::int32_t Exchange::reject(const char *message, std::int32_t status)
{
    keep(status);
    complain(message);
    return status;
}

void Exchange::complain(const char *message)
{
    logBadReply();
    if (!message || !m_displayErrors)
        return;
    // A unit that falls silent while it is connected misses a dozen replies in a row: the first
    // box says so, the log has the rest.
    if (m_setup.initializing && m_setup.complained) {
        logEvent(logName(), QString::fromLatin1(message));
        return;
    }
    m_setup.complained = m_setup.initializing;
    showMessage(QString::fromLatin1(message), MessageBox::Exclamation);
}

void Exchange::logBadReply() const
{
    if (debugSwitches().detailedErrors)
        logEvent(logName(), QStringLiteral(" bad reply <") + m_lastReply + QStringLiteral(">"));
}

// Each transaction raises its own status: a query made by a handler of an earlier event must not
// change it.
void Exchange::finish(std::int32_t status)
{
    keep(status);
    emit m_events.StatusChange(status);
}

void Exchange::announce(std::int32_t status, const std::function<void()> &event,
                        Announcing announcing)
{
    const bool raises = event && (announcing != GoodEventThenStatus || status == UnitEvents::Good);
    if (raises && announcing != StatusThenEvent)
        event();
    if (announcing != EventWithoutStatus)
        finish(status);
    if (raises && announcing == StatusThenEvent)
        event();
}
