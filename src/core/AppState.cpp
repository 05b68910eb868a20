// The application-wide state and its one accessor.
#include "core/AppState.h"

static std::unique_ptr<AppState> &stateSlot()
{
    static std::unique_ptr<AppState> state;
    return state;
}

AppState::AppState() = default;

AppState::~AppState() = default;

std::shared_ptr<ChannelsView> AppState::channelsWindow()
{
    if (!m_channelsWindow && makers.channelsWindow) {
        m_channelsWindow = makers.channelsWindow();
        m_channelsWindow->load();
    }
    return m_channelsWindow;
}

std::shared_ptr<IOMonitorView> AppState::ioMonitor()
{
    // The monitor's own port object looks for the monitor's switches while both are being made.
    if (!m_ioMonitor && makers.ioMonitor && !m_isMakingIOMonitor) {
        struct Making
        {
            bool &flag;
            ~Making() { flag = false; }
        };
        m_isMakingIOMonitor = true;
        const Making making{m_isMakingIOMonitor};
        m_ioMonitor = makers.ioMonitor();
    }
    return m_ioMonitor;
}

AppState &app()
{
    if (!stateSlot())
        stateSlot() = std::make_unique<AppState>();
    return *stateSlot();
}

void resetAppState()
{
    // Windows and units still look at the state while they go, so it is emptied before it ends.
    if (stateSlot()) {
        AppState &old = *stateSlot();
        old.guard().set(false);
        old.currentDevice.reset();
        old.channels.clear();
        old.presets.clear();
        old.devices.clear();
        old.mainWindow.reset();
        old.makers = {};
    }
    stateSlot() = std::make_unique<AppState>();
}

void logEvent(const QString &source, const QString &text)
{
    // A copy keeps the log for the length of the call, whatever its display does.
    if (const auto log = app().logger)
        log->LogEvent(source, text, true, true);
}
