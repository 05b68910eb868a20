// Connecting a channel.
#include "app/ConnectToDevice.h"

#include "app/AppState.h"
#include "app/Progress.h"
#include "app/Units.h"
#include "app/Words.h"
#include "app/modMain_KeldoX2.h"
#include "core/Message.h"
#include "core/ResumeNext.h"
#include "platform/EventQueue.h"
#include "platform/PortDirectory.h"

static const char connectSource[] = "frmMain.ConnectToDevice";

// Units on one line share a port, and a port opens once: the operator can go back and forth
// between them when the others let go of it first.
static void releasePortOf(clsKeldoX &device)
{
    const auto &devices = app().devices;
    for (int slot = 1; slot <= channelCount; ++slot)
        if (const auto other = devices[slot];
            other && other.get() != &device &&
            other->commPort()->PortNumber() == device.commPort()->PortNumber())
            other->commPort()->ClosePort();
}

static void showConnected(clsKeldoX &device)
{
    const auto mainWindow = app().mainWindow;
    const auto channelsWindow = app().channelsWindow();
    const QString text = QStringLiteral("CONNECTED ON COM%1").arg(device.commPort()->PortNumber());
    resumeNext(
        connectSource, [&] { mainWindow->EnablePresetsIfTheyreValid(); },
        [&] { channelsWindow->refreshChannelDisplays(); },
        [&] { mainWindow->setStatusPanel(MainPanel::connection, text); },
        [&] { channelsWindow->setStatusPanel(ChannelsPanel::connection, text); });
}

static void showNotConnected(const std::shared_ptr<clsKeldoX> &device)
{
    const auto mainWindow = app().mainWindow;
    const auto channelsWindow = app().channelsWindow();
    resumeNext(
        connectSource,
        [&] {
            if (device && device->Connection() == clsKeldoX::Network)
                showMessage(QStringLiteral("Network (TCP/IP) connection could not be opened."),
                            MessageBox::Exclamation);
        },
        // The frequency of the unit before must not stand under this channel's name.
        [&] { mainWindow->showNotConnected(); },
        [&] { mainWindow->showCommunicationFailure(device && device->wasCancelled()); },
        [&] { mainWindow->setStatusPanel(MainPanel::connection, Words::notConnected); },
        [&] { channelsWindow->showNotConnected(); });
}

static void pointWindowsAt(const std::shared_ptr<clsKeldoX> &device)
{
    resumeNext(
        connectSource, [&] { app().mainWindow->setDevice(device); },
        [&] { app().channelsWindow()->setDevice(device); }, [&] { app().currentDevice = device; });
}

// "Connecting channel 2 on COM5 (ttyUSB0)."
static QString connectingText(clsKeldoX &unit, std::int16_t channel)
{
    const std::int16_t port = unit.commPort()->PortNumber();
    const QString device = PortDirectory::instance().describe(port);
    QString text = QStringLiteral("Connecting channel %1 on COM%2").arg(channel).arg(port);
    if (!device.isEmpty())
        text += QStringLiteral(" (%1)").arg(device);
    return text + QLatin1Char('.');
}

// What both windows say first, and the channel's unit; one is made where the slot is empty.
static std::shared_ptr<clsKeldoX> prepare(std::int16_t channel)
{
    AppState &state = app();
    std::shared_ptr<clsKeldoX> unit;
    resumeNext(
        connectSource,
        [&] { state.mainWindow->setCurrentChannelCaption(Words::activeChannel(activeChannel())); },
        [&] {
            state.mainWindow->setStatusPanel(MainPanel::connection,
                                             QStringLiteral("CONNECTING..."));
        },
        [&] {
            state.channelsWindow()->setStatusPanel(ChannelsPanel::connection,
                                                   QStringLiteral("     "));
        },
        [&] { disableAllChannels(channel); },
        [&] {
            auto &slot = state.devices[channel];
            if (!slot)
                slot = makeUnit();
            unit = slot;
        });
    return unit;
}

static bool connectUnit(const std::shared_ptr<clsKeldoX> &unit, std::int16_t channel)
{
    bool connected = false;
    resumeNext(
        connectSource, [&] { releasePortOf(*unit); }, [&] { pointWindowsAt(unit); },
        [&] {
            app().connecting = unit;
            showProgressLine(connectingText(*unit, channel));
        },
        // A unit that was lost while it was read has told its name, but is not connected.
        [&] { connected = unit->Initialize() && unit->PortIsOpen(); });
    app().connecting.reset();
    return connected;
}

std::int16_t ConnectToDevice(std::shared_ptr<clsKeldoX> &device, std::int16_t channel)
{
    const QString source = QStringLiteral("Channel%1 ").arg(channel);
    resumeNext(connectSource, [&] { logEvent(source, QStringLiteral("connecting... ")); });
    if (channel == 0)
        return 0;
    const auto unit = prepare(channel);
    if (unit)
        device = unit;
    const bool connected = unit && connectUnit(unit, channel);
    // The window may have been closed while the unit was read.
    if (EventQueue::ending())
        return 0;
    // A search goes on with its own line.
    if (!app().search)
        resumeNext(connectSource, [] { showProgressLine({}); });
    if (connected) {
        showConnected(*unit);
        resumeNext(connectSource, [&] { logEvent(source, QStringLiteral("connected")); });
    } else {
        showNotConnected(unit);
    }
    return 0;
}
