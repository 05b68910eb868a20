// The two shapes that the unit's properties follow, query and setting: how a reply is judged, told
// to the operator and announced.
#include "device/clsKeldoX.h"

#include "core/DebugSwitches.h"
#include "core/EventLog.h"
#include "core/Message.h"
#include "core/ResumeNext.h"
#include "core/TextNumbers.h"
#include "platform/RunTimeError.h"

std::int32_t clsKeldoX::ask(const Query &query, const Store &store)
{
    const QString reply = deviceWrite(QString::fromLatin1(query.command));
    if (query.isGood(reply)) {
        try {
            store(leadingNumber(ParseData(reply)));
            return m_lastStatus = Good;
        } catch (const RunTimeError &) { // NOLINT(bugprone-empty-catch)
            // A number beyond the member's range is as bad as none.
        }
    }
    m_lastStatus = BadReply;
    if (m_readingSetup)
        m_setupIsGood = false;
    complain(query.message);
    return BadReply;
}

// "Equals the requested value" means the number as it was sent: 0.1 steps add up to
// 0.30000000000000004, which is sent, and echoed, as 0.3.
std::int32_t clsKeldoX::judgeEcho(const QString &reply, const QString &sent, const char *message,
                                  const Store &store)
{
    const QString number = ParseData(reply);
    if (isNumeric(number) && numericValue(number) == leadingNumber(sent)) {
        store(numericValue(number));
        return m_lastStatus = Good;
    }
    return judgeFailure(reply, message);
}

// A switch is echoed by its first character.
std::int32_t clsKeldoX::judgeSwitch(const QString &reply, bool on, const char *message,
                                    bool &member)
{
    if (reply.startsWith(QLatin1Char(on ? '1' : '0'))) {
        member = on;
        return m_lastStatus = Good;
    }
    return judgeFailure(reply, message);
}

// A setting's reply that is not good: refused for want of the password, or bad.
std::int32_t clsKeldoX::judgeFailure(const QString &reply, const char *message)
{
    std::int32_t status = BadReply;
    if (isRefused(reply, status))
        return status;
    m_lastStatus = BadReply;
    complain(message);
    return BadReply;
}

bool clsKeldoX::isRefused(const QString &reply, std::int32_t &status)
{
    if (!reply.startsWith(QLatin1String("PERMISSION DENIED")))
        return false;
    status = m_lastStatus = Refused;
    emit GetPassword();
    return true;
}

void clsKeldoX::complain(const char *message)
{
    logBadReply();
    if (!message || !m_displayErrors)
        return;
    // A unit that falls silent while it is connected misses a dozen replies in a row: the first
    // box says so, the log has the rest.
    if (m_initializing && m_complained) {
        logEvent(QStringLiteral("clsKeldoX"), QString::fromLatin1(message));
        return;
    }
    m_complained = m_initializing;
    showMessage(QString::fromLatin1(message), MessageBox::Exclamation);
}

void clsKeldoX::logBadReply() const
{
    if (debugSwitches().detailedErrors)
        logEvent(QStringLiteral("clsKeldoX"),
                 QStringLiteral(" bad reply <") + m_lastReply + QStringLiteral(">"));
}

// Each transaction raises its own status: a query made by a handler of an earlier event must not
// change it.
void clsKeldoX::finish(std::int32_t status)
{
    m_lastStatus = status;
    emit StatusChange(status);
}

// Factory settings are not judged, raise nothing and change no member.
void clsKeldoX::writeFactory(const char *source, const QString &command, double value)
{
    reportAndEnd(source, [&] {
        if (PortIsOpen())
            deviceWrite(command + numberToTextWithBlank(value));
    });
}
