// Connects the channel again by itself when the device of the unit that was connected comes back
// under its number. Off until the operator switches it on; the choice is kept.
#pragma once

#include "platform/TimerControl.h"

#include <memory>

class clsKeldoX;

class Reconnect : public QObject
{
    Q_OBJECT

public:
    explicit Reconnect(QObject *parent = nullptr);

    bool isOn() const { return m_on; }
    void setOn(bool on);

    // The unit's port hung up: its return is waited for, until something else is connected.
    void waitFor(const std::shared_ptr<clsKeldoX> &unit);
    bool isWaiting() const { return m_timer.isEnabled(); }

private:
    void begin();
    void look();
    void connectAgain(const std::shared_ptr<clsKeldoX> &unit);

    bool m_on = false;
    TimerControl m_timer;
    std::weak_ptr<clsKeldoX> m_unit;
    int m_timesSeen = 0;
    bool m_mayTry = false; // once for each return
};
