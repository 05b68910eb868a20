// The exchanges of the serial port object and their waits. A wait never spins and never blocks the
// window: its rounds are driven by events. While it waits anything may happen: a click, a timer,
// the port closed or hung up, the program ended. One exchange is on the line at a time.
#include "port/clsCommPort.h"

#include "core/EventLog.h"
#include "core/pauseit.h"
#include "platform/EventQueue.h"
#include "platform/TestHooks.h"

#include <QElapsedTimer>
#include <QScopedValueRollback>

// What the two-reply wait allows itself, deliberately long, whatever the port's own time-out.
static constexpr std::int32_t twoReplyTimeOutMs = 65535;

// After a time-out the answer may still come: so long the line has to be quiet before the next
// command.
static constexpr int usualQuietMs = 250;

static int &quietMs()
{
    static int ms = usualQuietMs;
    return ms;
}

void TestHooks::settleWithin(int ms)
{
    quietMs() = ms > 0 ? ms : usualQuietMs;
}

bool clsCommPort::isBusy() const
{
    return m_exchange && *m_exchange;
}

bool clsCommPort::refuseWhileBusy(const QString &command) const
{
    if (!isBusy())
        return false;
    logEvent(QStringLiteral("clsCommPort"),
             QStringLiteral("COM%1 waits for a reply: not sent: ").arg(m_portNumber) +
                 command.trimmed());
    return true;
}

bool clsCommPort::waitMustStop(const Still &opening) const
{
    return m_host->tmrCommTimer2->tag() != QLatin1String("FALSE") || !opening || !IsOpen() ||
           m_buffer.size() > longestReply || EventQueue::ending();
}

void clsCommPort::takeInput()
{
    if (m_modeInUse != Event)
        m_buffer += m_control->input();
}

bool clsCommPort::hasReply(int mode) const
{
    const auto first = m_buffer.indexOf(QLatin1Char('\r'));
    return first >= 0 &&
           (mode == 1 || (mode == 2 && first != m_buffer.lastIndexOf(QLatin1Char('\r'))));
}

clsCommPort::WaitResult clsCommPort::WaitForReply(int mode)
{
    if (refuseWhileBusy({}))
        return {0, true};
    const QScopedValueRollback exchange(m_exchange, std::optional(m_opening.still()));
    return waitForReply(mode, *m_exchange);
}

// A port that was closed or opened anew since ends the wait.
clsCommPort::WaitResult clsCommPort::waitForReply(int mode, const Still &opening)
{
    TimerControl *const timer = m_host->tmrCommTimer2;
    m_buffer.clear();
    timer->setTag(m_timeOutMs > 0 ? QStringLiteral("FALSE") : QStringLiteral("TRUE"));
    timer->setInterval(m_timeOutMs);
    timer->setEnabled(true);

    WaitResult result;
    bool arrived = false;
    while (!arrived && !waitMustStop(opening)) {
        // The first round looks at what there is; each later one sleeps until something happens.
        if (result.rounds == 0 || m_pollInterval > 0)
            EventQueue::yield();
        else
            EventQueue::sleepUntilEvent();
        takeInput();
        if (m_pollInterval > 0) {
            pauseit(m_host->tmrCommTimer, m_pollInterval);
            EventQueue::yield();
        }
        ++result.rounds;
        // What a port that was opened anew meanwhile holds answers another command.
        arrived = hasReply(mode) && (opening || !IsOpen());
    }
    if (!arrived && m_timeOutMs > 0)
        arrived = takeLast(mode, opening);
    result.timedOut = !arrived;
    timer->setEnabled(false);
    timer->setTag(QStringLiteral("TRUE"));
    if (!arrived && opening && IsOpen()) {
        // A command that nobody has taken must not be sent later.
        m_control->discardOutput();
        m_unsettled = true;
    }
    return result;
}

// The deadline is one of work, not of the clock: a reply that lies in the port when it is noticed
// counts, after a sleep of the computer for example.
bool clsCommPort::takeLast(int mode, const Still &opening)
{
    if (!opening || !IsOpen() || EventQueue::ending() || m_buffer.size() > longestReply)
        return false;
    EventQueue::yield();
    EventQueue::yield(); // what the first one received is handed over by the second in event mode
    if (opening)
        takeInput();
    return opening && hasReply(mode);
}

// The line is quiet for a while, or never is: then it has used up a reply's time.
void clsCommPort::settle(const Still &opening)
{
    m_unsettled = false;
    TimerControl *const timer = m_host->tmrCommTimer2;
    QElapsedTimer whole;
    whole.start();
    int before = -1;
    const auto listen = [&] {
        timer->setTag(QStringLiteral("FALSE"));
        timer->setInterval(quietMs());
        timer->setEnabled(true);
    };
    listen();
    while (!waitMustStop(opening) && whole.elapsed() < std::max(m_timeOutMs, quietMs())) {
        EventQueue::sleepUntilEvent();
        const int waiting = m_control->inBufferCount();
        if (before >= 0 && waiting != before)
            listen();
        before = waiting;
    }
    timer->setEnabled(false);
    timer->setTag(QStringLiteral("TRUE"));
}

// Whatever the port still holds is a late reply, which must not answer this command. False when
// the port turns out to have hung up: nobody is there to send to. Nor is anything sent once the
// program is ending: nobody would wait for its reply.
bool clsCommPort::send(const QString &command, const Still &opening)
{
    if (m_unsettled)
        settle(opening);
    EventQueue::yield(); // what has arrived is taken over, and shown, before it is thrown away
    if (opening)
        m_control->discardInput();
    if (!opening || EventQueue::ending())
        return false;
    SendString(command);
    EventQueue::yield();
    return true;
}

bool clsCommPort::WriteAndWaitForCr(const QString &command)
{
    if (command.isEmpty())
        return true;
    if (refuseWhileBusy(command))
        return false;
    const QScopedValueRollback exchange(m_exchange, std::optional(m_opening.still()));
    const Still opening = *m_exchange;
    ClearBuffer();
    if (!send(command, opening))
        return false;
    if (m_pollDelay > 0)
        pauseit(m_host->tmrCommTimer, m_pollDelay);
    return !waitForReply(1, opening).timedOut;
}

bool clsCommPort::WriteAndWaitFor2Crs(const QString &command)
{
    if (command.isEmpty())
        return true;
    if (refuseWhileBusy(command))
        return false;
    const QScopedValueRollback exchange(m_exchange, std::optional(m_opening.still()));
    const QScopedValueRollback longTimeOut(m_timeOutMs, twoReplyTimeOutMs);
    const Still opening = *m_exchange;
    // Neither ClearBuffer nor the poll delay here: the wait empties the buffer itself.
    return send(command, opening) && !waitForReply(2, opening).timedOut;
}
