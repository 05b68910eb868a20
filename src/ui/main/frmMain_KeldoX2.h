// The main window: the operator's one panel for the connected unit. It shows what the unit's events
// say and turns the operator's actions into settings of the unit. The sources are by subject: the
// window's life, menus, the unit's events, tuning, presets.
#pragma once

#include "app/Views.h"
#include "core/Presence.h"
#include "platform/TimerControl.h"
#include "widgets/ControlArray.h"
#include "widgets/OptionSet.h"

#include <QMainWindow>
#include <QPointer>

#include <memory>
#include <optional>

class clsKeldoX;
class clsPelltrim;
class frmContact;
class frmOperation;
class frmPasswordBox;
class QLineEdit;
class QPushButton;
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
    std::shared_ptr<clsKeldoX> device() const override { return mDevice; }

    void stopPolling() override;
    void restartPollingIfChecked() override;

    void setStatusPanel(int panel, const QString &text) override;
    void setCurrentChannelCaption(const QString &text) override;
    void EnablePresetsIfTheyreValid() override;
    void resetForSearch() override;
    void bringUpToDate() override;
    void showCommunicationFailure() override;
    void showNotConnected() override;

    // All controls but the frames and what is in them: those follow the unit's options.
    void EnableMostControls(bool enabled);
    // Empties the value displays, those of channels 1 to 4 on the channels window included.
    void ClearDisplays();
    void UpdateFreqs(clsKeldoX &device);
    // 1 to 3 select that mode; any other disables the frame and selects none.
    void ShowInputLimitingMode(std::int16_t mode);

protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    static constexpr int inputLimitingModes = 3; // numbered from 1

    // Window
    void Form_Activate();
    void Form_Unload();
    void bindControls();
    void styleControls();
    void fitFrequencyFont();
    void addShortcuts();
    void createPresets();
    void disableUnitControls();
    void letGoOfFocus();
    void focusFrequency();
    void selectFrequency();
    void clearTuning();
    bool isConnected() const;

    // Menus
    void bindMenus();
    void updateConnectEntries();
    void mnuShowChannels_Click();
    void mnuOptionsIOdaemon_Click();
    void mnuConnectComport_Click();
    void mnuConnectKnownComport_Click();
    void mnuPollingInterval_Click();
    void mnuHelpContents_Click();
    void mnuHelpAbout_Click();
    void mnuHelpContact_Click();
    void mnuEnablePolling_Click();

    // The unit's events
    void mDevice_GetPassword();
    void mDevice_StatusChange(qint32 status);
    void mDevice_InputLimitingModeChange(qint16 mode);
    void mDevice_InputAttenChange(double decibels);
    void mDevice_DUTChange();
    void mDevice_FreqChange(qint32 step, double freqMHz);
    void mDevice_LinkLost();
    void optInputLimit_Click(int index);
    void showSliderRange(clsKeldoX &device);
    void showBandwidth(clsKeldoX &device);

    // Tuning
    void txtCurrentFreq_KeyUp();
    void txtCurrentFreq_DblClick();
    void HScroll1_Scroll(int position);
    void HScroll1_Change();
    void HScroll1_Released();
    void sendStep(qint32 step);
    void followUnit();
    void moveSlider(qint32 step);

    // Presets
    void cmdSetPresets_Click();
    void cmdSetDUTFreq_Click(int index);
    void showPresets();

    std::unique_ptr<Ui::frmMain_KeldoX2> m_ui;
    std::shared_ptr<clsKeldoX> mDevice;
    std::unique_ptr<clsPelltrim> Pelltrim;
    std::unique_ptr<frmPasswordBox> m_passwordBox; // while it is shown
    QPointer<frmOperation> m_operation;            // while it is open
    QPointer<frmContact> m_contact;                // while it is open

    ControlArray<QPushButton> cmdSetDUTFreq{QStringLiteral("cmdSetDUTFreq")};  // 4 to 7
    ControlArray<QLineEdit> txtFreq{QStringLiteral("txtFreq")};                // 1 to 3
    ControlArray<QRadioButton> optInputLimit{QStringLiteral("optInputLimit")}; // modes
    OptionSet m_inputLimits;
    TimerControl tmrPollingTimer;
    TimerControl tmr1;

    struct Tuning
    {
        qint32 step = 0;
        double megahertz = 0;
    };
    std::optional<Tuning> m_tuning; // where the unit is, as last heard from it
    std::int16_t m_inputLimitingMode = 0;
    bool m_firstActivation = true;
    bool m_sliderEvents = false;    // down while code moves the slider
    bool m_setMode = false;         // of the presets
    bool m_reportsAreStale = false; // the unit went away
    Presence m_shown;               // of a unit behind controls that are switched on
};
