// Looking at the port directory from time to time: no system tells of serial ports without a
// further library.
#include "platform/PortWatcher.h"

#include "platform/PortDirectory.h"

static constexpr int lookEveryMs = 1000;

PortWatcher::PortWatcher(QObject *parent) : QObject(parent)
{
    m_timer.setInterval(lookEveryMs);
    connect(&m_timer, &TimerControl::Timer, this, &PortWatcher::look);
}

void PortWatcher::start(MayLook mayLook)
{
    m_mayLook = std::move(mayLook);
    m_before = present();
    m_timer.setEnabled(true);
}

// "7 /dev/ttyUSB0" for each number whose device is there.
QStringList PortWatcher::present()
{
    PortDirectory &directory = PortDirectory::instance();
    directory.refresh();
    QStringList ports;
    for (int number = 1; number <= PortDirectory::lastNumber; ++number)
        if (directory.isPresent(number))
            ports.append(QString::number(number) + QLatin1Char(' ') +
                         directory.find(number)->location);
    return ports;
}

void PortWatcher::look()
{
    if (m_mayLook && !m_mayLook())
        return;
    const QStringList now = present();
    if (now == m_before)
        return;
    m_before = now;
    emit Changed(static_cast<int>(now.size()));
}
