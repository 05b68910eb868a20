// The port search. What a search does with the units it finds is in modSearchPorts_units.cpp.
#include "app/modSearchPorts.h"

#include "app/AppState.h"
#include "app/Units.h"
#include "core/Message.h"
#include "core/ResumeNext.h"
#include "core/TextNumbers.h"
#include "device/clsKeldoX.h"
#include "discovery/clsSeeker.h"
#include "platform/EventQueue.h"
#include "platform/PortDirectory.h"

namespace {

const char searchSource[] = "SearchPorts";

constexpr std::int16_t lastAddress = 8;
constexpr int progressMaximum = 516; // a little above 2 x 255 + 1
constexpr int seekerPanel = 4;       // of the channels window
constexpr int searchPanel = 1;       // of the main window

QString searchingText()
{
    return QStringLiteral("SEARCHING PORTS, THIS MAY TAKE SOME TIME....");
}

// Escape, or the end of the program.
bool isBrokenOff()
{
    return app().interrupted || EventQueue::ending();
}

void setSearchPanel(const QString &text)
{
    app().searchStatus = text;
    app().mainWindow->setStatusPanel(searchPanel, text);
}

void createSeeker()
{
    AppState &state = app();
    state.seeker = std::make_shared<clsSeeker>();
    state.seeker->Construct();
    state.channelsWindow()->clearEscape();
}

// Ends the wait for whoever is asked just now: by the seeker, or by a unit that is being connected.
void breakOff()
{
    AppState &state = app();
    state.interrupted = true;
    if (const auto seeker = state.seeker)
        seeker->ClosePort();
    for (int slot = 1; slot <= 8; ++slot)
        if (const auto unit = state.devices[slot])
            unit->commPort()->ClosePort();
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

void connectFirstChannel()
{
    AppState &state = app();
    resumeNext(
        searchSource, [&] { state.channelsWindow()->arrangeForUnitsFound(); },
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

void reportNothingFound()
{
    AppState &state = app();
    resumeNext(
        searchSource, [&] { state.mainWindow->showCommunicationFailure(); },
        [] { endSearchStatus(); },
        [] {
            showMessage(QStringLiteral("Check data and power connections to KELDO-X filter then "
                                       "select the 'connect' from the menu."),
                        MessageBox::Exclamation);
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

void SearchPorts(std::int16_t mode, const QString &port)
{
    AppState &state = app();
    if (state.interruptSearch) // a search runs already; it has the ports
        return;
    state.interrupted = false;
    state.interruptSearch = breakOff;
    PortDirectory::instance().refresh();
    resumeNext(
        searchSource, [] { InitializeStuff(); }, [&] { state.channelsWindow()->show(); },
        [] { createSeeker(); }, [&] { searchByMode(mode, port); }, [&] { state.seeker.reset(); },
        [&] {
            state.channelsWindow()->setStatusPanel(seekerPanel, resultText(state.foundUnits));
            state.channelsWindow()->setProgress(state.channelsWindow()->progressMaximum() - 1);
        });
    if (!EventQueue::ending()) {
        if (state.foundUnits != 0)
            connectFirstChannel();
        else
            reportNothingFound();
    }
    state.interruptSearch = {};
    if (EventQueue::ending())
        return;
    resumeNext(
        searchSource,
        [&] {
            state.channelsWindow()->setProgress(0);
            state.channelsWindow()->setProgressVisible(false);
        },
        [&] { state.mainWindow->bringUpToDate(); });
    state.searchFinished = true;
}

void InitializeStuff()
{
    AppState &state = app();
    state.searchFinished = false;
    resumeNext(
        "SearchPorts.InitializeStuff", [&] { state.channelsWindow()->prepareForSearch(); },
        [] { setSearchPanel(searchingText()); },
        [&] {
            for (int channel = 1; channel <= 8; ++channel)
                state.channels[channel]->InitChannel();
        },
        [&] { state.mainWindow->resetForSearch(); }, [] { closeAllComPorts(); },
        [&] {
            // The windows let go of the units of the search before: nothing is connected now.
            state.devices.clear();
            state.currentDevice.reset();
            for (int channel = 1; channel <= 8; ++channel) {
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

void endSearchStatus()
{
    if (app().foundUnits == 0 && app().searchStatus == searchingText())
        setSearchPanel(QStringLiteral("NOT CONNECTED"));
}

// Every port is probed, also after units were found: a site may have several.
void SearchAllComPorts()
{
    for (std::int16_t port = 1; port <= PortDirectory::lastNumber && !isBrokenOff(); ++port)
        SearchComPorts(port, 0);
}

void SearchAddressesOnPort(std::int16_t port)
{
    for (std::int16_t address = 1; address <= lastAddress && !isBrokenOff(); ++address)
        SearchComPorts(port, address);
}

void SearchOnePort(std::int16_t port)
{
    SearchComPorts(port, 0);
}

static void actOnProbe(std::int16_t port, std::int16_t address)
{
    AppState &state = app();
    switch (IdentifyDeviceOnPort(address)) {
    case ProbeResult::UnitFound:
        ++state.foundUnits;
        state.seeker->ClosePort();
        FoundAnKeldoX(port, state.foundUnits, address);
        break;
    case ProbeResult::Loopback:
        setSearchPanel(QStringLiteral("FOUND A LOOPBACK ADAPTOR ON COM%1").arg(port));
        logEvent(QStringLiteral("SearchComPorts"),
                 QStringLiteral("FOUND A LOOPBACK ADAPTOR (SOMETHING THAT ECHOS WHAT IT'S SENT) "
                                "ON COM%1")
                     .arg(port));
        break;
    default:
        logEvent(
            QStringLiteral("SearchComPorts"),
            QStringLiteral(" COM%1 CAN BE OPENED, BUT DOES NOT RESPOND LIKE AN KELDO-X").arg(port));
        break;
    }
}

void SearchComPorts(std::int16_t port, std::int16_t address)
{
    AppState &state = app();
    const auto seeker = state.seeker;
    const QString fiveBlanks = QStringLiteral("     ");
    bool isOpen = false;
    resumeNext(
        searchSource,
        [&] {
            setSearchPanel(searchingText());
            state.channelsWindow()->setStatusPanel(seekerPanel, QString());
        },
        [&] { state.channelsWindow()->setProgress(2 * port + 1); },
        [&] { isOpen = seeker->Init(port); },
        [&] {
            if (isOpen)
                actOnProbe(port, address);
        },
        [&] { seeker->ClosePort(); },
        [&] { state.channelsWindow()->setStatusPanel(seekerPanel, fiveBlanks); });
}

ProbeResult IdentifyDeviceOnPort(std::int16_t address)
{
    const auto seeker = app().seeker;
    if (!seeker->Listen(address))
        return ProbeResult::Silent;
    // The order is part of the design, although the seeker strips the CR LF that two of the tests
    // look for.
    const QString reply = seeker->GetID().toUpper();
    if (reply == QLatin1String("KELDO-X") || reply == QLatin1String("TOVIN-R"))
        return ProbeResult::UnitFound;
    if (reply == QLatin1String("*ID?"))
        return ProbeResult::Loopback;
    if (reply == QLatin1String("1"))
        return ProbeResult::AnswersOne;
    if (reply == QLatin1String("\r\n"))
        return seeker->ItsAnAORRadio() ? ProbeResult::AORRadio : ProbeResult::UnitFound;
    if (reply == QLatin1String("?>"))
        return ProbeResult::Prompt;
    return reply.isEmpty() ? ProbeResult::Silent : ProbeResult::Other;
}
