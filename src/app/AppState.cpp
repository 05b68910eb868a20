// The application-wide state and its one accessor.
#include "app/AppState.h"

#include "core/DebugSwitches.h"
#include "platform/Application.h"
#include "widgets/MessageBox.h"

#include <QScopedValueRollback>

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
    // A monitor that logs while it is made asks for itself.
    if (!m_ioMonitor && makers.ioMonitor && !m_isMakingIOMonitor) {
        const QScopedValueRollback making(m_isMakingIOMonitor, true);
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
    installEventLog(nullptr);
    debugSwitches() = {};
    stateSlot() = std::make_unique<AppState>();
}

void installMessageBoxes()
{
    installMessageDoor([](const QString &text, int style, const QString &informative) {
        for (const std::int16_t flags : app().messageBoxStyle)
            style |= flags;
        return MessageBox::show({text, style, applicationTitle(), informative});
    });
}
