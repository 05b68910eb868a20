// The information windows: one of each, but About, which waits for its button.
#include "ui/main/HelpMenu.h"

#include "core/ResumeNext.h"
#include "platform/EventQueue.h"
#include "ui/dialogs/frmAbout.h"
#include "ui/dialogs/frmContact.h"
#include "ui/dialogs/frmOperation.h"
#include "ui/main/HelpPages.h"
#include "ui_frmMain_KeldoX2.h"

HelpMenu::HelpMenu(const Ui::frmMain_KeldoX2 &ui, QWidget *window) : m_window(window)
{
    connect(ui.mnuHelpContents, &QAction::triggered, this, &HelpMenu::mnuHelpContents_Click);
    connect(ui.mnuHelpManual, &QAction::triggered, this, &HelpMenu::mnuHelpManual_Click);
    connect(ui.mnuHelpProtocol, &QAction::triggered, this, &HelpMenu::mnuHelpProtocol_Click);
    connect(ui.mnuHelpAbout, &QAction::triggered, this, &HelpMenu::mnuHelpAbout_Click);
    connect(ui.mnuHelpContact, &QAction::triggered, this, &HelpMenu::mnuHelpContact_Click);
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

void HelpMenu::mnuHelpContents_Click()
{
    reportAndEnd("frmMain.mnuHelpContents_Click", [this] { showOne(m_operation, m_window); });
}

void HelpMenu::mnuHelpManual_Click()
{
    reportAndEnd("frmMain.mnuHelpManual_Click",
                 [] { showHelpPage(QStringLiteral("manual.html")); });
}

void HelpMenu::mnuHelpProtocol_Click()
{
    reportAndEnd("frmMain.mnuHelpProtocol_Click",
                 [] { showHelpPage(QStringLiteral("protocol.html")); });
}

void HelpMenu::mnuHelpAbout_Click()
{
    reportAndEnd("frmMain.mnuHelpAbout_Click", [this] {
        frmAbout about(m_window);
        if (!EventQueue::ending())
            about.exec();
    });
}

void HelpMenu::mnuHelpContact_Click()
{
    reportAndEnd("frmMain.mnuHelpContact_Click", [this] { showOne(m_contact, m_window); });
}
