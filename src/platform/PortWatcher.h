// Notices serial ports that are plugged in and unplugged while somebody looks at a list of them.
#pragma once

#include "platform/TimerControl.h"

#include <QStringList>

#include <functional>

class PortWatcher : public QObject
{
    Q_OBJECT

public:
    explicit PortWatcher(QObject *parent = nullptr);

    // Looks about once a second from now on, unless it may not look just now. What is there now is
    // no news.
    using MayLook = std::function<bool()>;
    void start(MayLook mayLook = {});
    void stop() { m_timer.setEnabled(false); }

signals:
    // So many numbers have a device now.
    void Changed(int ports);

private:
    static QStringList present();
    void look();

    TimerControl m_timer;
    QStringList m_before;
    MayLook m_mayLook;
};
