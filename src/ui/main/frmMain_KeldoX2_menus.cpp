// The main window's menus: connecting and the other windows.
#include "ui/main/frmMain_KeldoX2.h"

#include "app/AppState.h"
#include "app/Handlers.h"
#include "app/Progress.h"
#include "app/Reconnect.h"
#include "app/Words.h"
#include "app/modSearchPorts.h"
#include "core/ResumeNext.h"
#include "device/clsKeldoX.h"
#include "platform/EventQueue.h"
#include "ui/connect/frmConnectToComport.h"
#include "ui/main/clsPelltrim.h"
#include "ui_frmMain_KeldoX2.h"
#include "widgets/SearchStrip.h"

#include <QKeyEvent>

void frmMain_KeldoX2::bindMenus()
{
    m_ui->menuBar->installEventFilter(this);
    connect(m_ui->mnuFileExit, &QAction::triggered, this, &frmMain_KeldoX2::close);
    connect(m_ui->mnuShowChannels, &QAction::triggered, this,
            &frmMain_KeldoX2::mnuShowChannels_Click);
    connect(m_ui->mnuOptionsIOdaemon, &QAction::triggered, this,
            &frmMain_KeldoX2::mnuOptionsIOdaemon_Click);
    connect(m_ui->mnuConnectComport, &QAction::triggered, this,
            &frmMain_KeldoX2::mnuConnectComport_Click);
    connect(m_ui->mnuConnectKnownComport, &QAction::triggered, this,
            &frmMain_KeldoX2::mnuConnectKnownComport_Click);
    bindRunning();
    addReadAgain();
    connect(&app().guard(), &EventGuard::changed, this, &frmMain_KeldoX2::updateEntries);
    updateEntries();
}

// What runs by itself: connecting again.
void frmMain_KeldoX2::bindRunning()
{
    m_reconnect = new Reconnect(this);
    auto *entry = new QAction(tr("&Reconnect when the device returns"), this);
    entry->setObjectName(QStringLiteral("mnuReconnect"));
    entry->setCheckable(true);
    entry->setChecked(m_reconnect->isOn());
    entry->setToolTip(tr("When the connected unit's device is plugged in again under its number, "
                         "connect its channel again"));
    m_ui->mnuConnectMenu->addSeparator();
    m_ui->mnuConnectMenu->addAction(entry);
    connect(entry, &QAction::triggered, m_reconnect, &Reconnect::setOn);
}

// What has the focus takes Escape first: an entry box puts its value back.
void frmMain_KeldoX2::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        cancelRunning();
    QMainWindow::keyPressEvent(event);
}

void frmMain_KeldoX2::showProgressLine(const QString &text)
{
    SearchStrip::sayIn(*this, text, &cancelRunning);
}

void frmMain_KeldoX2::updateEntries()
{
    const bool canConnect = app().guard().isUp() && app().searchFinished;
    m_ui->mnuConnectComport->setEnabled(canConnect);
    m_ui->mnuConnectKnownComport->setEnabled(canConnect);
    // Setting up the window comes through here before there is a unit.
    mnuOptionsReadAgain->setEnabled(canConnect && m_shown.mDevice && isConnected());
}

void frmMain_KeldoX2::addReadAgain()
{
    auto *options = new QMenu(tr("Op&tions"), m_ui->menuBar);
    options->setObjectName(QStringLiteral("mnuOptions"));
    options->setToolTipsVisible(true);
    mnuOptionsReadAgain = options->addAction(tr("&Read the unit again"));
    mnuOptionsReadAgain->setObjectName(QStringLiteral("mnuOptionsReadAgain"));
    mnuOptionsReadAgain->setParent(this);
    mnuOptionsReadAgain->setShortcut(Qt::Key_F5);
    // The boxes of the channels window ask for it too.
    mnuOptionsReadAgain->setShortcutContext(Qt::ApplicationShortcut);
    mnuOptionsReadAgain->setToolTip(tr("Asks the connected unit for its values"));
    m_ui->menuBar->addMenu(options);
    connect(mnuOptionsReadAgain, &QAction::triggered, this,
            &frmMain_KeldoX2::mnuOptionsReadAgain_Click);
}

static std::shared_ptr<ChannelRow> rowOf(const std::shared_ptr<clsKeldoX> &unit)
{
    for (int number = 1; number <= channelCount; ++number)
        if (auto channel = app().channels[number]; channel && channel->Device() == unit)
            return channel;
    return nullptr;
}

// Only what the unit has is asked. A unit that goes or falls silent meanwhile ends the reading.
void frmMain_KeldoX2::mnuOptionsReadAgain_Click()
{
    const auto unit = m_shown.mDevice;
    const Still shown = m_shown.tunable.still();
    const int silencesBefore = unit->silences();
    const auto whileShown = [&](auto step) {
        return [&, step] {
            if (shown && unit->PortIsOpen() && unit->silences() == silencesBefore)
                step();
        };
    };
    whileGuarded([&] {
        resumeNext("frmMain.mnuOptionsReadAgain_Click", whileShown([&] { unit->currentFreq(); }),
                   whileShown([&] {
                       if (const auto row = rowOf(unit))
                           row->readAgain();
                   }),
                   whileShown([&] {
                       if (unit->HasAdjustableInputLimiting())
                           unit->InputLimitingMode(); // shown by its event
                   }),
                   whileShown([&] { Pelltrim->readAgain(); }));
    });
}

void frmMain_KeldoX2::mnuShowChannels_Click()
{
    reportAndEnd("frmMain.mnuShowChannels_Click", [] { app().channelsWindow()->show(); });
}

void frmMain_KeldoX2::mnuOptionsIOdaemon_Click()
{
    reportAndEnd("frmMain.mnuOptionsIOdaemon_Click", [] {
        if (const auto monitor = app().ioMonitor())
            monitor->show();
    });
}

void frmMain_KeldoX2::mnuConnectComport_Click()
{
    whileGuarded([this] {
        resumeNext(
            "frmMain.mnuConnectComport_Click", [this] { stopPolling(); }, [] { SearchPorts(1); },
            [this] {
                if (!EventQueue::ending())
                    restartPollingIfChecked();
            });
    });
}

void frmMain_KeldoX2::mnuConnectKnownComport_Click()
{
    whileGuarded([this] {
        resumeNext(
            "frmMain.mnuConnectKnownComport_Click", [this] { stopPolling(); },
            [this] {
                frmConnectToComport dialog(this);
                dialog.showModal();
            },
            [this] {
                if (!EventQueue::ending())
                    restartPollingIfChecked();
            });
    });
}
