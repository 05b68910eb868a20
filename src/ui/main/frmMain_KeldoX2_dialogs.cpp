// The main window's menu entries that open dialogs: the known port, the polling interval, and the
// information windows.
#include "ui/main/frmMain_KeldoX2.h"

#include "app/Handlers.h"
#include "core/ResumeNext.h"
#include "core/TextNumbers.h"
#include "platform/EventQueue.h"
#include "ui/connect/frmConnectToComport.h"
#include "ui/dialogs/frmAbout.h"
#include "ui/dialogs/frmContact.h"
#include "ui/dialogs/frmInputBox.h"
#include "ui/dialogs/frmOperation.h"
#include "ui_frmMain_KeldoX2.h"

static constexpr double defaultIntervalMs = 1000;

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

// A number that is not negative becomes the interval. One beyond 32767 overflows: it is reported,
// and the interval stays as it was.
void frmMain_KeldoX2::mnuPollingInterval_Click()
{
    handle("frmMain_KeldoX2.mnuPollingInterval_Click", [this] {
        frmInputBox box;
        box.setResultType(frmInputBox::Number);
        box.setDefaultValue(QStringLiteral("1000"));
        box.setText(QStringLiteral("Enter an interval (in milliseconds)"));
        box.showModal();
        if (box.answerStatus() != frmInputBox::Entered)
            return;
        const auto *number = std::get_if<double>(&box.result());
        const std::int16_t interval = toInt16(number ? *number : defaultIntervalMs);
        if (interval >= 0)
            tmrPollingTimer.setInterval(interval);
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
