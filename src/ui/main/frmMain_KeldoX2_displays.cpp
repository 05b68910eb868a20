// What the main window shows and which of its controls are enabled, with and without a unit.
#include "ui/main/frmMain_KeldoX2.h"

#include "app/Words.h"
#include "app/modMain_KeldoX2.h"
#include "core/ResumeNext.h"
#include "ui/main/clsPelltrim.h"
#include "ui_frmMain_KeldoX2.h"

#include <QScopedValueRollback>

bool frmMain_KeldoX2::isConnected() const
{
    return mDevice->DeviceFound() && mDevice->PortIsOpen();
}

static bool isFrameName(const QString &name)
{
    return name.startsWith(QLatin1String("FRAME"), Qt::CaseInsensitive);
}

// Disabling a control would hand the focus on, and the next key to whoever gets it.
void frmMain_KeldoX2::letGoOfFocus()
{
    if (QWidget *control = focusWidget())
        control->clearFocus();
}

// After a connection the operator types a frequency, unless something else was chosen meanwhile.
void frmMain_KeldoX2::focusFrequency()
{
    if (!focusWidget() || focusWidget() == this)
        selectFrequency();
}

// Typing replaces what is there, also where the box has the focus already.
void frmMain_KeldoX2::selectFrequency()
{
    m_ui->txtCurrentFreq->setFocus(Qt::ShortcutFocusReason);
    m_ui->txtCurrentFreq->selectAll();
}

void frmMain_KeldoX2::EnableMostControls(bool enabled)
{
    if (!enabled) {
        m_shown.renew();
        letGoOfFocus();
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
    m_shown.renew();
    if (m_ui->txtCurrentFreq->hasFocus() || m_ui->HScroll1->hasFocus())
        letGoOfFocus();
    m_ui->txtCurrentFreq->setEnabled(false);
    m_ui->HScroll1->setEnabled(false);
    ShowInputLimitingMode(0);
    if (Pelltrim)
        Pelltrim->DisableControls();
}

void frmMain_KeldoX2::clearTuning()
{
    m_tuning.reset();
    const QScopedValueRollback quiet(m_sliderEvents, false);
    m_ui->HScroll1->setValue(m_ui->HScroll1->minimum());
    m_ui->txtCurrentFreq->clear();
    m_ui->lblChannelSpacing->clear();
    m_ui->lblbandwidth->clear();
    for (QLineEdit *box : txtFreq.all())
        box->clear();
}

void frmMain_KeldoX2::ClearDisplays()
{
    m_ui->txtCurrentFreq->clear();
    for (QPushButton *button : cmdSetDUTFreq.all())
        button->setText({});
    if (const auto channels = app().channelsWindow())
        for (int channel = 1; channel <= channelsPerTab; ++channel) // of the first tab alone
            channels->clearChannelBoxes(channel);
    for (QLineEdit *box : txtFreq.all())
        box->clear();
    m_ui->txtPelltrim->clear();
}

void frmMain_KeldoX2::resetForSearch()
{
    resumeNext(
        "frmMain.resetForSearch", [this] { EnableMostControls(false); },
        [this] { disableUnitControls(); }, [this] { clearTuning(); }, [this] { ClearDisplays(); },
        [this] {
            setStatusPanel(MainPanel::unitStatus, {});
            setCurrentChannelCaption(Words::noActiveChannel);
            m_ui->ShapeStatusLight->setFillColor(IndicatorLight::buttonFace, tr("searching"));
            m_ui->ShapeOneBitLight->setFillColor(IndicatorLight::buttonFace, tr("off"));
        });
}

void frmMain_KeldoX2::bringUpToDate()
{
    const bool connected = isConnected();
    EnableMostControls(true);
    showPresets();
    if (connected)
        focusFrequency();
    else
        showNotConnected();
}

void frmMain_KeldoX2::showNotConnected()
{
    disableUnitControls();
    clearTuning();
    setStatusPanel(MainPanel::unitStatus, {});
    if (activeChannel() == 0)
        setCurrentChannelCaption(Words::noActiveChannel);
}

void frmMain_KeldoX2::setStatusPanel(int panel, const QString &text)
{
    m_ui->StatusBar->setPanelText(panel, text);
}

void frmMain_KeldoX2::setCurrentChannelCaption(const QString &text)
{
    m_ui->lblCurrentChannel->setText(text);
}

void frmMain_KeldoX2::stopPolling()
{
    tmrPollingTimer.setEnabled(false);
}

void frmMain_KeldoX2::restartPollingIfChecked()
{
    if (m_ui->mnuEnablePolling->isChecked())
        tmrPollingTimer.setEnabled(true);
}
