// What a search does to the windows. What it does with the units it finds is in
// modSearchPorts_units.cpp.
#include "app/modSearchPorts.h"

#include "app/AppState.h"
#include "app/Progress.h"
#include "app/Units.h"
#include "app/Words.h"
#include "core/Message.h"
#include "core/ResumeNext.h"
#include "core/TextNumbers.h"
#include "platform/EventQueue.h"
#include "platform/PortDirectory.h"

namespace {

const char searchSource[] = "SearchPorts";

constexpr int progressMaximum = 516; // a little above 2 x 255 + 1

void showSearching()
{
    app().mainWindow->setStatusPanel(
        MainPanel::connection, QStringLiteral("SEARCHING PORTS, THIS MAY TAKE SOME TIME...."));
}

// "Looking at COM7 (ttyUSB0, USB serial), port 3 of 12. Units found: 1."
QString lookingAtText(std::int16_t port, std::int16_t address, int i, int n)
{
    const QString device = PortDirectory::instance().describe(port);
    QString text = QStringLiteral("Looking at COM%1").arg(port);
    if (!device.isEmpty())
        text += QStringLiteral(" (%1)").arg(device);
    if (address > 0)
        text += QStringLiteral(", address %1").arg(address);
    if (address > 0 && n > 1)
        text += QStringLiteral(" of %1").arg(n);
    else if (n > 1)
        text += QStringLiteral(", port %1 of %2").arg(i).arg(n);
    return text + QStringLiteral(". Units found: %1.").arg(app().foundUnits);
}

void showLookingAt(std::int16_t port, std::int16_t address, int i, int n)
{
    AppState &state = app();
    resumeNext(
        searchSource,
        [&] {
            // Most numbers have no device and are passed in no time: they are not worth a line.
            if (PortDirectory::instance().isPresent(port))
                showProgressLine(lookingAtText(port, address, i, n));
        },
        [&] {
            showSearching();
            state.channelsWindow()->setStatusPanel(ChannelsPanel::seeker, QString());
        },
        [&] { state.channelsWindow()->setProgress(2 * port + 1); });
}

void showLookedAt()
{
    resumeNext(searchSource, [] {
        app().channelsWindow()->setStatusPanel(ChannelsPanel::seeker, QStringLiteral("     "));
    });
}

void showLoopback(std::int16_t port)
{
    resumeNext(searchSource, [port] {
        app().mainWindow->setStatusPanel(
            MainPanel::connection, QStringLiteral("FOUND A LOOPBACK ADAPTOR ON COM%1").arg(port));
    });
}

void searchByMode(std::int16_t mode, const QString &port)
{
    if (mode == 0 || mode == 1)
        SearchAllComPorts();
    else if (mode == 2)
        SearchAddressesOnPort(toInt16(numericValue(port)));
    else if (mode == 3)
        SearchOnePort(toInt16(numericValue(port)));
}

// A first unit whose connection was broken off in the search is offered, and not tried again.
void connectFirstChannel(bool connectionWasBrokenOff)
{
    AppState &state = app();
    resumeNext(searchSource, [&] { state.channelsWindow()->arrangeForUnitsFound(); });
    if (connectionWasBrokenOff)
        return;
    resumeNext(
        searchSource,
        [&] {
            logEvent(QStringLiteral("SearchPorts"),
                     QStringLiteral("Back to COM%1...").arg(state.channels[1]->ComPortNumber()));
        },
        [&] {
            state.channels[1]->setStatus(1);
            state.channels[1]->optPortNumClick();
        },
        [&] { state.mainWindow->device()->setDisplayErrors(true); });
}

// Which ports could not be looked at, and what might be missed on those that could.
QString whatElse(const PortSearch &search)
{
    QStringList lines;
    for (const PortSearch::Refused &refused : search.refused())
        lines.append(QStringLiteral("COM%1: %2").arg(refused.port).arg(refused.reason));
    if (search.mayHaveAddressedUnits())
        lines.append(QStringLiteral(
            "Addressed units (Tovin-R) answer only when they are called by their address: connect "
            "to a known com port with \"Unit is an addressable Tovin-R\" ticked."));
    return lines.join(QStringLiteral("\n\n"));
}

void reportNothingFound(const PortSearch &search)
{
    AppState &state = app();
    // The operator who broke it off knows that nothing was found.
    const bool cancelled = search.outcome() == PortSearch::Outcome::Cancelled;
    resumeNext(
        searchSource, [&] { state.mainWindow->showCommunicationFailure(cancelled); },
        [&] {
            // A loopback adaptor's line stays; "searching" would no longer be true.
            if (!search.endedAtLoopback())
                state.mainWindow->setStatusPanel(MainPanel::connection, Words::notConnected);
        },
        [&] { state.channelsWindow()->showNotConnected(); },
        [&] {
            if (cancelled)
                return;
            showMessage(QStringLiteral("Check data and power connections to KELDO-X filter then "
                                       "select the 'connect' from the menu."),
                        MessageBox::Exclamation, whatElse(search));
        },
        [] {
            logEvent(QStringLiteral("SearchPorts"), QStringLiteral("Could not find any KELDO-X's"));
        });
}

QString resultText(int units)
{
    return units == 1 ? QStringLiteral("1 UNIT FOUND")
                      : QStringLiteral("%1 UNITS FOUND").arg(units);
}

} // namespace

std::shared_ptr<PortSearch> makeSearch()
{
    auto search = std::make_shared<PortSearch>();
    PortSearch *const said = search.get();
    QObject::connect(
        said, &PortSearch::LookingAt, said,
        [](qint16 port, qint16 address, int i, int n) { showLookingAt(port, address, i, n); });
    QObject::connect(said, &PortSearch::LookedAt, said, [] { showLookedAt(); });
    QObject::connect(said, &PortSearch::LoopbackFound, said,
                     [](qint16 port) { showLoopback(port); });
    QObject::connect(said, &PortSearch::UnitFound, said, [](qint16 port, qint16 address) {
        FoundAnKeldoX(port, ++app().foundUnits, address);
    });
    QObject::connect(said, &PortSearch::Cancelled, said, [] {
        // Whichever unit is being connected just now has failed to connect.
        const auto &devices = app().devices;
        for (int slot = 1; slot <= channelCount; ++slot)
            if (const auto unit = devices[slot])
                unit->cancelInitialize();
    });
    return search;
}

// The search is made, looks where it is told to, and ends with what it found.
static void runSearch(const std::function<void()> &look)
{
    AppState &state = app();
    if (state.search)
        return;
    const auto search = makeSearch();
    state.search = search;
    bool connectionWasBrokenOff = false;
    QObject::connect(search.get(), &PortSearch::Cancelled, search.get(), [&] {
        const auto unit = app().connecting;
        connectionWasBrokenOff = unit && unit == app().devices[1];
    });
    PortDirectory::instance().refresh();
    resumeNext(
        searchSource, [] { InitializeStuff(); },
        [&] {
            showProgressLine(QStringLiteral("Looking for serial ports."));
            state.channelsWindow()->show();
            state.channelsWindow()->clearEscape();
        },
        [&] { look(); }, [&] { search->releaseSeeker(); },
        [&] {
            state.channelsWindow()->setStatusPanel(ChannelsPanel::seeker,
                                                   resultText(state.foundUnits));
            state.channelsWindow()->setProgress(state.channelsWindow()->progressMaximum() - 1);
        });
    if (!EventQueue::ending()) {
        // The outcome: units were found, or there is nothing to connect.
        if (search->outcome() == PortSearch::Outcome::Found)
            connectFirstChannel(connectionWasBrokenOff);
        else
            reportNothingFound(*search);
    }
    state.search.reset();
    if (EventQueue::ending())
        return;
    resumeNext(
        searchSource, [] { showProgressLine({}); },
        [&] {
            state.channelsWindow()->setProgress(0);
            state.channelsWindow()->setProgressVisible(false);
        },
        [&] { state.mainWindow->bringUpToDate(); });
    state.searchFinished = true;
}

void SearchPorts(std::int16_t mode, const QString &port)
{
    runSearch([&] { searchByMode(mode, port); });
}

void SearchOneAddress(std::int16_t port, std::int16_t address)
{
    runSearch([&] { SearchComPorts(port, address); });
}

void InitializeStuff()
{
    AppState &state = app();
    state.searchFinished = false;
    resumeNext(
        "SearchPorts.InitializeStuff", [&] { state.channelsWindow()->prepareForSearch(); },
        [] { showSearching(); },
        [&] {
            for (int channel = 1; channel <= channelCount; ++channel)
                state.channels[channel]->InitChannel();
        },
        [&] { state.mainWindow->resetForSearch(); }, [] { closeAllComPorts(); },
        [&] {
            // The windows let go of the units of the search before: nothing is connected now.
            state.devices.clear();
            state.currentDevice.reset();
            for (int channel = 1; channel <= channelCount; ++channel) {
                state.channels[channel]->setDevice(nullptr);
                state.channels[channel]->setExists(false);
            }
            const auto none = makeUnit();
            state.mainWindow->setDevice(none);
            state.channelsWindow()->setDevice(none);
        },
        [&] { state.foundUnits = 0; },
        [&] {
            state.channelsWindow()->setProgressMaximum(progressMaximum);
            state.channelsWindow()->setProgressVisible(true);
        });
}

void SearchAllComPorts()
{
    app().search->searchAllPorts();
}

void SearchAddressesOnPort(std::int16_t port)
{
    app().search->searchAddressesOn(port);
}

void SearchOnePort(std::int16_t port)
{
    app().search->probe(port, 0);
}

void SearchComPorts(std::int16_t port, std::int16_t address)
{
    app().search->probe(port, address);
}

ProbeResult IdentifyDeviceOnPort(std::int16_t address)
{
    return app().search->identify(address);
}
