// The timer control over QTimer.
#include "platform/TimerControl.h"

#include "platform/TestHooks.h"

#include <algorithm>

namespace {

struct Shortening
{
    int longestMs = 0;
    qint64 virtualMs = 0;
};

Shortening &shortening()
{
    static Shortening current;
    return current;
}

} // namespace

void TestHooks::shortenTimers(int longestMs)
{
    shortening() = {longestMs, 0};
}

qint64 TestHooks::virtualMs()
{
    return shortening().virtualMs;
}

TimerControl::TimerControl(QObject *parent) : QObject(parent), m_timer(this)
{
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        shortening().virtualMs += m_interval;
        emit Timer();
    });
}

void TimerControl::setInterval(int ms)
{
    m_interval = ms;
    startOrStop();
}

void TimerControl::setEnabled(bool enabled)
{
    m_enabled = enabled;
    startOrStop();
}

void TimerControl::startOrStop()
{
    const int limit = shortening().longestMs;
    if (m_enabled && m_interval > 0)
        m_timer.start(limit > 0 ? std::min(m_interval, limit) : m_interval);
    else
        m_timer.stop();
}

void elapseOnTimer(TimerControl *timer)
{
    QObject::connect(timer, &TimerControl::Timer, timer, [timer] {
        timer->setTag(QStringLiteral("TRUE"));
        timer->setEnabled(false);
    });
}
