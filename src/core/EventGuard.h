// The event guard: control handlers write to the unit only while it is up. It is down from
// start-up to the main window's first activation, while any handler works, and for the whole of a
// port search.
#pragma once

#include <QObject>

class EventGuard : public QObject
{
    Q_OBJECT

public:
    bool isUp() const { return m_up; }
    void set(bool up);

signals:
    void changed(bool up);

private:
    bool m_up = false;
};
