// What the search does with units and ports: binding a unit to its channel, closing all ports,
// and the list of ports that can be opened.
#include "app/modSearchPorts.h"

#include "app/AppState.h"
#include "app/Units.h"
#include "app/Words.h"
#include "core/ResumeNext.h"
#include "core/TextNumbers.h"
#include "discovery/PortList.h"
#include "platform/PortDirectory.h"
#include "platform/RunTimeError.h"
#include "widgets/PortBox.h"

#include <QComboBox>
#include <QPointer>

static void announceUnit(std::int16_t port)
{
    const QString text = QStringLiteral("FOUND AN KELDO-X ON COM%1").arg(port);
    app().mainWindow->setStatusPanel(MainPanel::connection, text);
    logEvent(QStringLiteral("SearchComPorts"), text);
}

static QString debugLabel(std::int16_t port, std::int16_t n)
{
    return QStringLiteral("DUTS(") + numberToTextWithBlank(n) + QStringLiteral(") on COM") +
           numberToTextWithBlank(port) + QStringLiteral("Channel ") + numberToTextWithBlank(n);
}

static void prepareUnit(clsKeldoX &unit, std::int16_t port, std::int16_t n, std::int16_t address)
{
    unit.setConnection(clsKeldoX::SerialPort);
    unit.setDebugInfo(debugLabel(port, n));
    unit.setAddr(address);
    unit.setDisplayErrors(true);
    unit.commPort()->setDisplayErrors(true);
}

void FoundAnKeldoX(std::int16_t port, std::int16_t n, std::int16_t address)
{
    reportAndEnd("SearchPorts.FoundAnKeldoX", [&] {
        AppState &state = app();
        announceUnit(port);
        auto &slot = state.devices[n]; // raises for a ninth unit
        slot = makeUnit();
        const auto unit = slot;
        const auto channel = state.channels[n];
        channel->setDevice(unit);
        channel->setIndex(n);
        channel->setChannelNumber(n);
        prepareUnit(*unit, port, n, address);
        channel->setComPortNumber(port);
        channel->showPort(QString::number(n),
                          QStringLiteral("select the device on COM%1:").arg(port),
                          QStringLiteral("COM%1:").arg(port));
        channel->setStatus(1);
        channel->optPortNumClick();
        channel->ShowControls();
        channel->setExists(true);
        // The unit opens its port again when it is used.
        unit->commPort()->ClosePort();
    });
}

void closeAllComPorts()
{
    const char source[] = "modSearchPorts.closeAllComPorts";
    resumeNext(source, [] {
        if (const auto monitor = app().ioMonitor())
            monitor->closeComPort();
    });
    for (int slot = 0; slot <= decltype(AppState::devices)::last; ++slot)
        resumeNext(source, [slot] {
            if (const auto unit = app().devices[slot])
                unit->commPort()->ClosePort();
        });
}

// False when no port opens: the list stays disabled.
static bool fill(QComboBox &combo, QStringList &refused)
{
    combo.setEnabled(false);
    combo.clear();
    const QPointer<QComboBox> box(&combo); // its window may go while the ports are tried
    listOpenablePorts([&](const ListedPort &port) {
        if (!port.failure.isEmpty())
            refused.append(QStringLiteral("COM%1: %2").arg(port.number).arg(port.failure));
        if (box && port.opens)
            addPort(*box, numberToTextWithBlank(port.number),
                    PortDirectory::instance().describe(port.number));
    });
    if (!box)
        return true;
    if (box->count() == 0)
        return false;
    // The highest-numbered port that can be opened is left out of the list on purpose; it can
    // still be typed.
    box->removeItem(box->count() - 1);
    if (box->count() > 0)
        box->setCurrentIndex(0);
    box->setEnabled(true);
    return true;
}

QStringList PopulateComboBox(QComboBox &combo)
{
    return PopulateComboBoxFor("modSearchPorts.PopulateComboBox", combo);
}

QStringList PopulateComboBoxFor(const char *source, QComboBox &combo)
{
    QStringList refused;
    reportAndEnd(source, [&] {
        if (!fill(combo, refused))
            throw RunTimeError(ErrorNumber::InvalidProcedureCall);
    });
    return refused;
}

QStringList PopulateComboBoxAgain(QComboBox &combo)
{
    QStringList refused;
    reportAndEnd("modSearchPorts.PopulateComboBoxAgain", [&] { fill(combo, refused); });
    return refused;
}
