// A timer as the windows use it: an interval, an on switch, and a text tag that waits read.
#pragma once

#include <QObject>
#include <QTimer>

class TimerControl : public QObject
{
    Q_OBJECT

public:
    explicit TimerControl(QObject *parent = nullptr);

    int interval() const { return m_interval; } // ms
    // 0 or a negative interval never ticks, enabled or not. A new interval starts a running
    // timer afresh.
    void setInterval(int ms);

    bool isEnabled() const { return m_enabled; }
    void setEnabled(bool enabled);

    QString tag() const { return m_tag; }
    void setTag(const QString &tag) { m_tag = tag; }

signals:
    void Timer();

private:
    void startOrStop();

    QTimer m_timer;
    int m_interval = 0;
    bool m_enabled = false;
    QString m_tag;
};

// What every one-shot timer of the program does when it fires: mark itself elapsed and stop.
void elapseOnTimer(TimerControl *timer);
