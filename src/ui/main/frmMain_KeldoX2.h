// The main window: the operator's one panel for the connected unit. It shows what the unit's events
// say and turns the operator's actions into settings of the unit. Tuning, fine tuning, presets and
// polling are parts of their own; here are the window's life, its menus and the unit's other
// events.
#pragma once

#include "app/Views.h"
#include "device/UnitValue.h"
#include "platform/TimerControl.h"
#include "ui/main/ShownUnit.h"
#include "widgets/ControlArray.h"
#include "widgets/OptionSet.h"

#include <QMainWindow>
#include <QPointer>

#include <memory>

class Polling;
class Presets;
class Tuning;
class clsPelltrim;
class frmContact;
class frmOperation;
class frmPasswordBox;
class QAction;
class Reconnect;
class SearchStrip;
class QRadioButton;

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
    void showCommunicationFailure() override;
    void showNotConnected() override;
    void showInputAttenuation(std::optional<double> decibels) override;
    void showProgressLine(const QString &text) override;
    void unload() override { close(); }

    // All controls but the frames and what is in them: those follow the unit's options.
    void EnableMostControls(bool enabled);
    // Empties the value displays, those of channels 1 to 4 on the channels window included.
    void ClearDisplays();
    // 1 to 3 select that mode; any other disables the frame and selects none.
    void ShowInputLimitingMode(std::int16_t mode);

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
    void mnuHelpContents_Click();
    void mnuHelpAbout_Click();
    void mnuHelpContact_Click();

    // The unit's events
    void mDevice_GetPassword();
    void mDevice_StatusChange(qint32 status);
    void mDevice_InputLimitingModeChange(qint16 mode);
    void mDevice_InputAttenChange(double decibels);
    void mDevice_DUTChange();
    void mDevice_LinkLost();
    void mDevice_ConfirmationChange(UnitValue value, bool confirmed);
    void optInputLimit_Click(int index);
    void followEvents();
    void showSpacing(std::int32_t hertz);
    void showBandwidth(clsKeldoX &device);

    std::unique_ptr<Ui::frmMain_KeldoX2> m_ui;
    ShownUnit m_shown;
    std::unique_ptr<Tuning> m_tuning;
    std::unique_ptr<Presets> m_presets;
    std::unique_ptr<Polling> m_polling;
    std::unique_ptr<clsPelltrim> Pelltrim;
    std::unique_ptr<frmPasswordBox> m_passwordBox; // while it is shown
    QPointer<frmOperation> m_operation;            // while it is open
    QPointer<frmContact> m_contact;                // while it is open

    QAction *mnuOptionsReadAgain = nullptr;
    ControlArray<QRadioButton> optInputLimit{QStringLiteral("optInputLimit")}; // modes
    OptionSet m_inputLimits;
    SearchStrip *m_strip = nullptr;
    Reconnect *m_reconnect = nullptr;
    TimerControl tmr1;

    std::int16_t m_inputLimitingMode = 0;
    bool m_firstActivation = true;
    bool m_unitWasShown = false; // until then the captions of its plan stand as designed
};
