// The main window: the operator's one panel for the connected unit. It shows what the unit's events
// say and turns the operator's actions into settings of the unit. Tuning, fine tuning, presets,
// input limiting and polling are parts of their own; here are the window's life, its menus and the
// unit's other events.
#pragma once

#include "app/Views.h"
#include "device/UnitValue.h"
#include "platform/TimerControl.h"
#include "ui/main/ShownUnit.h"

#include <QMainWindow>

#include <memory>

class HelpMenu;
class InputLimiting;
class Polling;
class Presets;
class Tuning;
class clsPelltrim;
class PasswordRequest;
class PlanCaptions;
class QAction;
class Reconnect;

namespace Ui {
class frmMain_KeldoX2;
}

class frmMain_KeldoX2 : public QMainWindow, public MainWindowView
{
    Q_OBJECT

public:
    frmMain_KeldoX2();
    ~frmMain_KeldoX2() override;

    void load() override;
    void show() override { QMainWindow::show(); }

    void setDevice(std::shared_ptr<clsKeldoX> device) override;
    std::shared_ptr<clsKeldoX> device() const override { return m_shown.mDevice; }

    void stopPolling() override;
    void restartPollingIfChecked() override;

    void setStatusPanel(int panel, const QString &text) override;
    void setCurrentChannelCaption(const QString &text) override;
    void EnablePresetsIfTheyreValid() override;
    void resetForSearch() override;
    void bringUpToDate() override;
    void showCommunicationFailure(bool cancelled) override;
    void showNotConnected() override;
    void showInputAttenuation(std::optional<double> decibels) override;
    void showProgressLine(const QString &text) override;
    void unload() override { close(); }

    // All controls but the frames and what is in them: those follow the unit's options.
    void EnableMostControls(bool enabled);
    // Empties the value displays, those of channels 1 to 4 on the channels window included.
    void ClearDisplays();

protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    // Window
    void Form_Activate();
    void Form_Unload();
    void bindControls();
    void styleControls();
    int smallestFrequencyPixels() const;
    void fitFrequencyFont();
    void disableUnitControls();
    void focusFrequency();
    void clearUnit();
    bool isConnected() const;

    // Menus
    void bindMenus();
    void addReadAgain();
    void updateEntries();
    void bindRunning();
    void mnuShowChannels_Click();
    void mnuOptionsIOdaemon_Click();
    void mnuConnectComport_Click();
    void mnuConnectKnownComport_Click();
    void mnuOptionsReadAgain_Click();

    // The unit's events
    void mDevice_StatusChange(qint32 status);
    void mDevice_DUTChange();
    void mDevice_LinkLost();
    void mDevice_ConfirmationChange(UnitValue value, bool confirmed);
    void followEvents();

    std::unique_ptr<Ui::frmMain_KeldoX2> m_ui;
    ShownUnit m_shown;
    std::unique_ptr<Tuning> m_tuning;
    std::unique_ptr<Presets> m_presets;
    std::unique_ptr<Polling> m_polling;
    std::unique_ptr<InputLimiting> m_limiting;
    std::unique_ptr<HelpMenu> m_help;
    std::unique_ptr<clsPelltrim> Pelltrim;
    std::unique_ptr<PasswordRequest> m_password;
    std::unique_ptr<PlanCaptions> m_captions;

    QAction *mnuOptionsReadAgain = nullptr;
    Reconnect *m_reconnect = nullptr;
    TimerControl tmr1;

    bool m_firstActivation = true;
};
