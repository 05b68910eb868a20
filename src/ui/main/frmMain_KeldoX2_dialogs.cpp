// The main window's menu entries that open dialogs: the known port and the information
// windows.
#include "ui/main/frmMain_KeldoX2.h"

#include "app/Handlers.h"
#include "core/ResumeNext.h"
#include "platform/EventQueue.h"
#include "ui/connect/frmConnectToComport.h"
#include "ui/dialogs/frmAbout.h"
#include "ui/dialogs/frmContact.h"
#include "ui/dialogs/frmOperation.h"
#include "ui_frmMain_KeldoX2.h"

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

// A window that is open already comes to the front.
template <class Window> static void showOne(QPointer<Window> &window, QWidget *owner)
{
    if (!window)
        window = new Window(owner);
    window->show();
    window->raise();
    window->activateWindow();
}

void frmMain_KeldoX2::mnuHelpContents_Click()
{
    reportAndEnd("frmMain.mnuHelpContents_Click", [this] { showOne(m_operation, this); });
}

void frmMain_KeldoX2::mnuHelpAbout_Click()
{
    reportAndEnd("frmMain.mnuHelpAbout_Click", [this] {
        frmAbout about(this);
        if (!EventQueue::ending())
            about.exec();
    });
}

void frmMain_KeldoX2::mnuHelpContact_Click()
{
    reportAndEnd("frmMain.mnuHelpContact_Click", [this] { showOne(m_contact, this); });
}
