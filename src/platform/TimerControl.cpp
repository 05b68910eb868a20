// The timer control over QTimer.
#include "platform/TimerControl.h"

TimerControl::TimerControl(QObject *parent) : QObject(parent), m_timer(this)
{
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &TimerControl::Timer);
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
    if (m_enabled && m_interval > 0)
        m_timer.start(m_interval);
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
