// The waits of the serial port object. A wait never spins and never blocks the window: its rounds
// are driven by events. While it waits anything may happen: a click, a timer, the port closed or
// hung up, the program ended.
#include "port/clsCommPort.h"

#include "core/pauseit.h"
#include "platform/EventQueue.h"

// What the two-reply wait allows itself, deliberately long, whatever the port's own time-out.
static constexpr std::int32_t twoReplyTimeOutMs = 65535;

namespace {

// Sets a member for the length of a scope and puts the old value back, whatever happens.
template <class Value> class WhileSet
{
public:
    WhileSet(Value &member, Value value) : m_member(member), m_old(member) { member = value; }
    ~WhileSet() { m_member = m_old; }
    WhileSet(const WhileSet &) = delete;
    WhileSet &operator=(const WhileSet &) = delete;

private:
    Value &m_member;
    Value m_old;
};

} // namespace

bool clsCommPort::waitMustStop(int generation) const
{
    return m_host->tmrCommTimer2->tag() != QLatin1String("FALSE") || generation != m_generation ||
           !IsOpen() || EventQueue::ending();
}

void clsCommPort::takeInput()
{
    if (m_modeInUse != Event)
        m_buffer += m_control->input();
}

clsCommPort::WaitResult clsCommPort::WaitForReply(int mode)
{
    const WhileSet exchange(m_exchanges, m_exchanges + 1);
    return waitForReply(mode, m_generation);
}

// A port that was closed or opened anew since the generation ends the wait.
clsCommPort::WaitResult clsCommPort::waitForReply(int mode, int generation)
{
    const auto hasEnded = [this, mode] {
        const auto first = m_buffer.indexOf(QLatin1Char('\r'));
        return first >= 0 &&
               (mode == 1 || (mode == 2 && first != m_buffer.lastIndexOf(QLatin1Char('\r'))));
    };

    TimerControl *const timer = m_host->tmrCommTimer2;
    m_buffer.clear();
    timer->setTag(m_timeOutMs > 0 ? QStringLiteral("FALSE") : QStringLiteral("TRUE"));
    timer->setInterval(m_timeOutMs);
    timer->setEnabled(true);

    WaitResult result;
    bool arrived = false;
    const int ownWait = ++m_waits;
    while (!waitMustStop(generation)) {
        EventQueue::yield();
        takeInput();
        if (m_pollInterval > 0)
            pauseit(m_host->tmrCommTimer, m_pollInterval);
        EventQueue::yield();
        ++result.rounds;
        // The buffer is shared: after another exchange in the middle of this one it holds the other
        // one's reply, and this one has timed out.
        arrived = hasEnded() && ownWait == m_waits;
        if (arrived)
            break;
        // Bytes that came during the second yield wake nobody again: take them before sleeping.
        const bool unread = m_modeInUse != Event && m_control->inBufferCount() > 0;
        if (!unread && m_pollInterval <= 0 && !waitMustStop(generation))
            EventQueue::sleepUntilEvent();
    }
    result.timedOut = !arrived;
    timer->setEnabled(false);
    timer->setTag(QStringLiteral("TRUE"));
    return result;
}

// Whatever the port still holds is a late reply, which must not answer this command. False when
// the port turns out to have hung up: nobody is there to send to.
bool clsCommPort::send(const QString &command)
{
    const int generation = m_generation;
    m_control->discardInput();
    if (generation != m_generation)
        return false;
    SendString(command);
    EventQueue::yield();
    return true;
}

bool clsCommPort::WriteAndWaitForCr(const QString &command)
{
    if (command.isEmpty())
        return true;
    const WhileSet exchange(m_exchanges, m_exchanges + 1);
    const int generation = m_generation;
    ClearBuffer();
    if (!send(command))
        return false;
    if (m_pollDelay > 0)
        pauseit(m_host->tmrCommTimer, m_pollDelay);
    return !waitForReply(1, generation).timedOut;
}

bool clsCommPort::WriteAndWaitFor2Crs(const QString &command)
{
    if (command.isEmpty())
        return true;
    const WhileSet exchange(m_exchanges, m_exchanges + 1);
    const WhileSet longTimeOut(m_timeOutMs, twoReplyTimeOutMs);
    const int generation = m_generation;
    // Neither ClearBuffer nor the poll delay here: the wait empties the buffer itself.
    return send(command) && !waitForReply(2, generation).timedOut;
}
