// The application-wide state: everything that several windows share, as one object.
#pragma once

#include "app/SlotTable.h"
#include "app/Views.h"
#include "core/EventGuard.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>

class clsPresetButton;
class PortSearch;

// Makers of the windows and bindings, handed over by whoever starts the program.
struct WindowMakers
{
    std::function<std::unique_ptr<SplashView>()> splash;
    std::function<std::shared_ptr<MainWindowView>()> mainWindow;
    std::function<std::shared_ptr<ChannelsView>()> channelsWindow;
    std::function<std::shared_ptr<IOMonitorView>()> ioMonitor;
    std::function<std::shared_ptr<ChannelRow>()> channel;
    std::function<std::unique_ptr<LogFile>()> logFile;
};

class AppState
{
public:
    AppState();
    ~AppState();
    AppState(const AppState &) = delete;
    AppState &operator=(const AppState &) = delete;

    EventGuard &guard() { return m_guard; }

    // The windows, made when first asked for. Null where there is no maker.
    std::shared_ptr<ChannelsView> channelsWindow();
    std::shared_ptr<IOMonitorView> ioMonitor();

    WindowMakers makers;
    std::shared_ptr<MainWindowView> mainWindow;

    SlotTable<clsKeldoX, 8> devices;       // slot n: the n-th unit found
    SlotTable<ChannelRow, 8> channels;     // slot n: the binding of channel n
    SlotTable<clsPresetButton, 7> presets; // 1 to 3 start, center, stop displays; 4 to 7 buttons
    std::shared_ptr<clsKeldoX> currentDevice;

    std::array<std::int16_t, 3> messageBoxStyle{}; // style words of every message box

    bool searchFinished = true;         // False while a search or the connect-to-port dialog runs
    std::int16_t foundUnits = 0;        // of the last search
    std::shared_ptr<PortSearch> search; // the running one; null while none runs
    std::shared_ptr<clsKeldoX> connecting; // the unit that is being read in; null while none is
    std::int16_t sliderScale = 1;          // steps per unit of the step slider: 1 or 4

private:
    EventGuard m_guard;
    std::shared_ptr<ChannelsView> m_channelsWindow;
    std::shared_ptr<IOMonitorView> m_ioMonitor;
    bool m_isMakingIOMonitor = false;
};

// The one state of the run.
AppState &app();

// Ends this state and starts a new one: start-up, and each test.
void resetAppState();

// Messages become boxes in the program's one style: the icon with the application-wide style flags,
// the application's title as the caption.
void installMessageBoxes();
