// What the main window shows and which of its controls are enabled, with and without a unit.
#include "ui/main/frmMain_KeldoX2.h"

#include "app/Words.h"
#include "app/modMain_KeldoX2.h"
#include "core/ResumeNext.h"
#include "ui/main/InputLimiting.h"
#include "ui/main/PlanCaptions.h"
#include "ui/main/Polling.h"
#include "ui/main/Presets.h"
#include "ui/main/Tuning.h"
#include "ui/main/clsPelltrim.h"
#include "ui_frmMain_KeldoX2.h"
#include "widgets/EntryMark.h"

bool frmMain_KeldoX2::isConnected() const
{
    return m_shown.mDevice->DeviceFound() && m_shown.mDevice->PortIsOpen();
}

static bool isFrameName(const QString &name)
{
    return name.startsWith(QLatin1String("FRAME"), Qt::CaseInsensitive);
}

// After a connection the operator types a frequency, unless something else was chosen meanwhile.
void frmMain_KeldoX2::focusFrequency()
{
    if (!focusWidget() || focusWidget() == this)
        m_tuning->select();
}

void frmMain_KeldoX2::EnableMostControls(bool enabled)
{
    if (!enabled) {
        m_shown.tunable.renew();
        // Disabling a control would hand the focus on, and the next key to whoever gets it.
        if (QWidget *control = focusWidget())
            control->clearFocus();
    }
    reportAndEnd("frmMain.EnableMostControls", [&] {
        const auto widgets = m_ui->centralWidget->findChildren<QWidget *>();
        for (QWidget *control : widgets) {
            const bool isContainer = control->layout();
            if (isContainer || isFrameName(control->objectName()) ||
                isFrameName(control->parentWidget()->objectName()))
                continue;
            control->setEnabled(enabled);
        }
    });
}

// What acts on the unit or shows its values; presets can be looked at and set without one.
void frmMain_KeldoX2::disableUnitControls()
{
    m_shown.tunable.renew();
    m_tuning->disable();
    m_limiting->ShowInputLimitingMode(0);
    if (Pelltrim)
        Pelltrim->DisableControls();
}

// What one unit has told, and how sure it was.
void frmMain_KeldoX2::clearUnit()
{
    m_tuning->clear();
    m_presets->clearFreqs();
    m_limiting->mark(true);
    markConfirmed(*m_ui->ShapeOneBitLight, true);
    showInputAttenuation({});
    setStatusPanel(MainPanel::unitStatus, {});
    m_captions->clear();
}

void frmMain_KeldoX2::ClearDisplays()
{
    EntryMark::of(*m_ui->txtCurrentFreq).clear();
    m_presets->clearCaptions();
    if (const auto channels = app().channelsWindow())
        for (int channel = 1; channel <= channelsPerTab; ++channel) // of the first tab alone
            channels->clearChannelBoxes(channel);
    m_presets->clearFreqs();
    EntryMark::of(*m_ui->txtPelltrim).clear();
}

void frmMain_KeldoX2::resetForSearch()
{
    resumeNext(
        "frmMain.resetForSearch", [this] { EnableMostControls(false); },
        [this] { disableUnitControls(); }, [this] { clearUnit(); }, [this] { ClearDisplays(); },
        [this] {
            setCurrentChannelCaption(Words::noActiveChannel);
            m_ui->ShapeStatusLight->setFillColor(IndicatorLight::buttonFace, tr("searching"));
        });
}

void frmMain_KeldoX2::bringUpToDate()
{
    const bool connected = isConnected();
    EnableMostControls(true);
    m_presets->refresh();
    if (!connected) {
        showNotConnected();
        return;
    }
    m_tuning->enable();
    focusFrequency();
}

void frmMain_KeldoX2::showNotConnected()
{
    disableUnitControls();
    clearUnit();
    if (activeChannel() == 0)
        setCurrentChannelCaption(Words::noActiveChannel);
    updateEntries();
}

void frmMain_KeldoX2::setStatusPanel(int panel, const QString &text)
{
    m_ui->StatusBar->setPanelText(panel, text);
}

void frmMain_KeldoX2::setCurrentChannelCaption(const QString &text)
{
    m_ui->lblCurrentChannel->setText(text);
}

void frmMain_KeldoX2::EnablePresetsIfTheyreValid()
{
    m_presets->EnablePresetsIfTheyreValid();
}

void frmMain_KeldoX2::stopPolling()
{
    m_polling->stop();
}

void frmMain_KeldoX2::restartPollingIfChecked()
{
    m_polling->restartIfChecked();
}
