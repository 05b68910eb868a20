// The entries of the main window's Help menu and the information windows that they open.
#pragma once

#include <QObject>
#include <QPointer>

class QWidget;
class frmContact;
class frmOperation;

namespace Ui {
class frmMain_KeldoX2;
}

class HelpMenu : public QObject
{
    Q_OBJECT

public:
    HelpMenu(const Ui::frmMain_KeldoX2 &ui, QWidget *window);

private:
    void mnuHelpContents_Click();
    void mnuHelpManual_Click();
    void mnuHelpProtocol_Click();
    void mnuHelpAbout_Click();
    void mnuHelpContact_Click();

    QWidget *m_window;
    QPointer<frmOperation> m_operation; // while it is open
    QPointer<frmContact> m_contact;     // while it is open
};
