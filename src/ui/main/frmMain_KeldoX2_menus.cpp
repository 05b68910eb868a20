// The main window's menus: connecting and the other windows.
#include "ui/main/frmMain_KeldoX2.h"

#include "app/AppState.h"
#include "app/Handlers.h"
#include "app/modSearchPorts.h"
#include "core/ResumeNext.h"
#include "platform/EventQueue.h"
#include "ui_frmMain_KeldoX2.h"

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
    connect(m_ui->mnuHelpContents, &QAction::triggered, this,
            &frmMain_KeldoX2::mnuHelpContents_Click);
    connect(m_ui->mnuHelpAbout, &QAction::triggered, this, &frmMain_KeldoX2::mnuHelpAbout_Click);
    connect(m_ui->mnuHelpContact, &QAction::triggered, this,
            &frmMain_KeldoX2::mnuHelpContact_Click);
    connect(&app().guard(), &EventGuard::changed, this, &frmMain_KeldoX2::updateConnectEntries);
    updateConnectEntries();
}

void frmMain_KeldoX2::updateConnectEntries()
{
    const bool canConnect = app().guard().isUp() && app().searchFinished;
    m_ui->mnuConnectComport->setEnabled(canConnect);
    m_ui->mnuConnectKnownComport->setEnabled(canConnect);
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
