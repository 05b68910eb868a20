// Waiting for a device to return.
#include "app/Reconnect.h"

#include "app/AppState.h"
#include "app/Handlers.h"
#include "app/Words.h"
#include "core/ResumeNext.h"
#include "device/clsKeldoX.h"
#include "platform/Application.h"
#include "platform/PortDirectory.h"
#include "platform/SettingsStore.h"

static constexpr int lookEveryMs = 1000;
// The system makes a device first and gives the rights on it a moment later.
static constexpr int timesSeenBefore = 2;

static const char reconnectSource[] = "Reconnect";

static QString section()
{
    return QStringLiteral("Settings");
}

static QString key()
{
    return QStringLiteral("Reconnect");
}

Reconnect::Reconnect(QObject *parent) : QObject(parent)
{
    m_timer.setInterval(lookEveryMs);
    connect(&m_timer, &TimerControl::Timer, this, &Reconnect::look);
    m_on = SettingsStore::read(applicationTitle(), section(), key()) == QLatin1String("1");
}

void Reconnect::setOn(bool on)
{
    m_on = on;
    m_timer.setEnabled(false);
    if (on)
        begin();
    reportAndEnd(reconnectSource, [on] {
        SettingsStore::write(applicationTitle(), section(), key(),
                             on ? QStringLiteral("1") : QStringLiteral("0"));
    });
}

void Reconnect::waitFor(const std::shared_ptr<clsKeldoX> &unit)
{
    m_unit = unit; // also while it is off: it may be switched on before the device returns
    if (m_on)
        begin();
}

void Reconnect::begin()
{
    if (m_unit.expired())
        return;
    m_mayTry = true;
    m_timesSeen = 0;
    m_timer.setEnabled(true);
}

void Reconnect::look()
{
    const auto unit = m_unit.lock();
    AppState &state = app();
    // Something else is connected, or a search has let the unit go: nobody waits for it any more.
    if (!unit || unit->PortIsOpen() || state.currentDevice != unit) {
        m_timer.setEnabled(false);
        return;
    }
    if (state.search || !state.guard().isUp())
        return;
    PortDirectory::instance().refresh();
    if (!PortDirectory::instance().isUsable(unit->commPort()->PortNumber())) {
        m_mayTry = true;
        m_timesSeen = 0;
        return;
    }
    if (m_mayTry && ++m_timesSeen >= timesSeenBefore) {
        m_mayTry = false; // a unit that does not answer is not asked again and again
        connectAgain(unit);
    }
}

void Reconnect::connectAgain(const std::shared_ptr<clsKeldoX> &unit)
{
    AppState &state = app();
    const auto tell = [&](const QString &text) {
        state.mainWindow->setStatusPanel(MainPanel::connection, text);
        state.channelsWindow()->setStatusPanel(ChannelsPanel::connection, text);
    };
    const std::int16_t port = unit->commPort()->PortNumber();
    handle(reconnectSource, [&] {
        for (int channel = 1; channel <= channelCount; ++channel) {
            const auto row = state.channels[channel];
            if (state.devices[channel] != unit || !row)
                continue;
            logEvent(QStringLiteral("Reconnect"),
                     QStringLiteral("COM%1 is back, connecting channel %2 again")
                         .arg(port)
                         .arg(channel));
            row->setStatus(1);
            row->optPortNumClick();
            // Not where the device is back and its unit does not answer.
            if (unit->PortIsOpen() && unit->isInitialized() && state.currentDevice == unit)
                tell(QStringLiteral("CONNECTED AGAIN ON COM%1").arg(port));
            return;
        }
    });
}
