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
    // Another unit may sit at the other end when the device returns.
    m_setup.isGood = false;
    m_unconfirmed.clear();
    finish(UnitEvents::BadReply);
    emit m_events.LinkLost();
}

bool Exchange::PortIsOpen()
{
    return m_connection == SerialPort && commPort()->IsOpen();
}

bool Exchange::canSend()
{
    return PortIsOpen() && !commPort()->isBusy();
}

void Exchange::cancelInitialize()
{
    m_setup.cancelled = true;
    commPort()->ClosePort();
}

Reply Exchange::send(const QString &command)
{
    const auto unit = keepAlive();
    Reply reply;
    bool isOpen = m_connection != SerialPort;
    bool silent = false;
    bool timedOut = true;
    resumeNext(
        "clsKeldoX.deviceWrite", [this] { emit m_events.AboutToExchange(); },
        [&] {
            if (m_connection != SerialPort)
                return;
            const auto port = commPort();
            isOpen = port->IsOpen() && !port->isBusy();
            if (!isOpen) {
                if (port->isBusy())
                    logEvent(logName(), QStringLiteral(" waits for a reply, not sent: ") + command);
                return;
            }
            logEvent(logName(), QStringLiteral(" sending ") + command +
                                    QStringLiteral(" to com port %1").arg(port->PortNumber()));
            timedOut = !port->WriteAndWaitForCr(command + QLatin1Char('\r'));
            reply.text = port->Buffer();
            silent = timedOut && reply.text.isEmpty();
            port->ClearBuffer();
        });
    if (!isOpen)
        return {};
    while (reply.text.endsWith(QLatin1Char(' ')) || reply.text.endsWith(QLatin1Char('\n')) ||
           reply.text.endsWith(QLatin1Char('\r')))
        reply.text.chop(1);
    // Of several lines nobody knows which one is the answer.
    reply.complete = !timedOut && !reply.text.contains(QLatin1Char('\r'));
    m_lastReply = reply.text;
    if (!timedOut)
        logEvent(logName(), QStringLiteral(" received ") + reply.text);
    else
        logEvent(QStringLiteral("Keldo-X"), QStringLiteral(" timed out ") + reply.text);
    noteSilence(silent);
    return reply;
}

void Exchange::beginReadingIn()
{
    m_setup.readingIn = true;
    m_setup.silent = 0;
    m_unconfirmed.clear(); // of what was shown before, which is no longer
}

// A unit that falls silent would cost a time-out for each of dozens of values: the second one in a
// row ends it.
void Exchange::noteSilence(bool silent)
{
    m_fellSilent = silent;
    m_silences += silent ? 1 : 0;
    if (!m_setup.readingIn)
        return;
    if (!silent) {
        m_setup.silent = 0;
        if (const QString before = std::exchange(m_deferred, {}); !before.isEmpty())
            showComplaint(before);
        return;
    }
    if (++m_setup.silent < 2 || !PortIsOpen())
        return;
    m_setup.gaveUp = true;
    m_deferred.clear();
    logEvent(logName(), QStringLiteral(" has stopped answering"));
    commPort()->ClosePort();
}

void Exchange::endReadingIn()
{
    m_setup.readingIn = false;
    const QString before = std::exchange(m_deferred, {});
    if (m_setup.cancelled || !m_displayErrors)
        return;
    if (m_setup.gaveUp)
        showMessage(QStringLiteral("The unit on COM%1 has stopped answering. Check its power and "
                                   "data connections, then connect it again.")
                        .arg(commPort()->PortNumber()),
                    MessageBox::Exclamation);
    else if (!before.isEmpty())
        showComplaint(before);
}

void Exchange::confirm(std::optional<UnitValue> value)
{
    if (value && m_unconfirmed.remove(*value) > 0)
        emit m_events.ConfirmationChange(*value, true);
}

void Exchange::doubt(UnitValue value)
{
    if (m_unconfirmed.contains(value))
        return;
    m_unconfirmed.insert(value, false);
    emit m_events.ConfirmationChange(value, false);
}

static bool isSwitch(const std::optional<UnitValue> &value)
{
    return value == UnitValue::AGC || value == UnitValue::CalMode;
}

// A good answer after a time-out may be the late one of the setting before: a reading alone tells.
void Exchange::judgeConfirmation(std::optional<UnitValue> value, std::int32_t status, bool complete)
{
    if (!value || status == UnitEvents::Refused)
        return;
    if (status != UnitEvents::BadReply) {
        if (!m_unconfirmed.value(*value, true))
            confirm(value);
        return;
    }
    const bool isNew = !m_unconfirmed.contains(*value);
    m_unconfirmed[*value] = m_unconfirmed.value(*value) || !complete;
    if (isNew)
        emit m_events.ConfirmationChange(*value, false);
}

bool Exchange::mayAsk(const std::function<bool()> &isOffered)
{
    return canSend() && (!isOffered || isOffered());
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
        if (good)
            confirm(asked.value);
        else
            m_setup.miss();
        if (!good && isSwitch(asked.value))
            doubt(*asked.value);
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
        judgeConfirmation(setting.value, status, reply.complete);
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
    // Half a reply is none: "LOCKED" may be the end of "UNLOCKED", "1" the start of "12".
    try {
        return reply.complete && test(reply.text);
    } catch (const RunTimeError &) {
        return false;
    }
}

std::int32_t Exchange::judge(const Reply &reply, bool good, const char *message, bool mayBeRefused)
{
    if (good)
        return keep(UnitEvents::Good);
    if (!mayBeRefused || !ReplyText::isRefused(reply.whole()))
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
    const QString text = QString::fromLatin1(message);
    if (m_setup.initializing && (m_setup.gaveUp || m_setup.cancelled)) {
        logEvent(logName(), text);
        return;
    }
    if (m_setup.readingIn && m_setup.silent == 1) {
        m_deferred = text;
        return;
    }
    showComplaint(text);
}

// A unit that is garbled while it is connected misses a dozen replies: the first box says so, the
// log has the rest.
void Exchange::showComplaint(const QString &message)
{
    if (m_setup.initializing && m_setup.complained) {
        logEvent(logName(), message);
        return;
    }
    m_setup.complained = m_setup.initializing;
    showMessage(message, MessageBox::Exclamation);
}

void Exchange::logBadReply() const
{
    if (debugSwitches().detailedErrors)
        logEvent(logName(), QStringLiteral(" bad reply <") + m_lastReply + QStringLiteral(">"));
}

// Each exchange raises its own status: a query made by a handler of an earlier event must not
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
