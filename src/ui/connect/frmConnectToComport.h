// The dialog that connects to a unit on a known port, or to the addressable units on one line.
// Opening it already closes all ports and clears the channels; Cancel does not undo that.
#pragma once

#include "platform/PortWatcher.h"

#include <QDialog>
#include <QStringList>

#include <memory>

class QComboBox;
class QLabel;

namespace Ui {
class frmConnectToComport;
}

class frmConnectToComport : public QDialog
{
    Q_OBJECT

public:
    explicit frmConnectToComport(QWidget *owner = nullptr);
    ~frmConnectToComport() override;

    // Shows the dialog over its owner and returns when it was closed, or when the program ends.
    void showModal();

    // The list of ports. Disabled until it has been filled; it stays so when that failed.
    QComboBox &comboComPort();

    void reject() override; // also Escape and the frame; breaks a running search off

private:
    void Form_Load();
    void addLines();
    void listPorts();
    void list(QStringList (*fill)(QComboBox &ports));
    void listAgain(int ports);
    void showPortsDevice();
    static QLabel *makeLine(QWidget *parent, const QString &name);
    void Connect();
    void OKButton_Click();
    void CancelButton_Click();
    void setControlsEnabled(bool enabled);
    void finish();

    std::unique_ptr<Ui::frmConnectToComport> m_ui;
    QLabel *m_device = nullptr;  // which device the chosen number is
    QLabel *m_refused = nullptr; // devices that are not to be had, and why
    QLabel *m_letGo = nullptr;   // what opening the dialog has done
    PortWatcher m_watcher;
    bool m_listing = false;
    bool m_connecting = false;
    bool m_searched = false; // since the dialog was shown
};
