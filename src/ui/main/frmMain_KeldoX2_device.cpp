// How the main window follows the unit: its events become displays, and its requests are answered.
#include "ui/main/frmMain_KeldoX2.h"

#include "app/Handlers.h"
#include "app/Reconnect.h"
#include "app/Units.h"
#include "app/Words.h"
#include "app/modMain_KeldoX2.h"
#include "core/ResumeNext.h"
#include "core/TextNumbers.h"
#include "platform/EventQueue.h"
#include "ui/dialogs/frmPasswordBox.h"
#include "ui/main/Presets.h"
#include "ui/main/Tuning.h"
#include "ui/main/clsPelltrim.h"
#include "ui_frmMain_KeldoX2.h"
#include "widgets/EntryMark.h"

static constexpr double hertzPerKilohertz = 1000;

// Emptied first: no value of the unit before stands under this one's name.
void frmMain_KeldoX2::setDevice(std::shared_ptr<clsKeldoX> device)
{
    if (m_shown.mDevice)
        disconnect(m_shown.mDevice.get(), nullptr, this, nullptr);
    m_shown.mDevice = device ? std::move(device) : makeUnit();
    m_shown.reportsAreStale = false;
    disableUnitControls();
    clearUnit();
    followEvents();
    // The fine-tuning controls hear the unit after the window.
    if (Pelltrim)
        Pelltrim->setDevice(m_shown.mDevice);
}

void frmMain_KeldoX2::followEvents()
{
    const clsKeldoX *unit = m_shown.mDevice.get();
    connect(unit, &clsKeldoX::GetPassword, this, &frmMain_KeldoX2::mDevice_GetPassword);
    connect(unit, &clsKeldoX::StatusChange, this, &frmMain_KeldoX2::mDevice_StatusChange);
    connect(unit, &clsKeldoX::InputLimitingModeChange, this,
            &frmMain_KeldoX2::mDevice_InputLimitingModeChange);
    connect(unit, &clsKeldoX::InputAttenChange, this, &frmMain_KeldoX2::mDevice_InputAttenChange);
    m_tuning->follow(*unit);
    connect(unit, &clsKeldoX::DUTChange, this, &frmMain_KeldoX2::mDevice_DUTChange);
    connect(unit, &clsKeldoX::LinkLost, this, &frmMain_KeldoX2::mDevice_LinkLost);
    connect(unit, &clsKeldoX::ConfirmationChange, this,
            &frmMain_KeldoX2::mDevice_ConfirmationChange);
}

// The command is sent also after Cancel, deliberately, then with nothing behind the blank.
void frmMain_KeldoX2::mDevice_GetPassword()
{
    if (m_passwordBox) // one box is enough, whatever else is refused while it is open
        return;
    reportAndEnd("formMain.DUT_GetPassword", [this] {
        const auto unit = m_shown.mDevice;
        QString password;
        m_passwordBox = std::make_unique<frmPasswordBox>();
        m_passwordBox->showModal();
        if (m_passwordBox->answerStatus() == frmPasswordBox::Entered)
            password = m_passwordBox->result();
        m_passwordBox.reset();
        if (!EventQueue::ending())
            unit->deviceWrite(QStringLiteral("PASSWORD ") + password);
    });
}

static QString meaningOf(qint32 status)
{
    switch (status) {
    case clsKeldoX::Good:
        return QObject::tr("OK: the unit answered as expected");
    case clsKeldoX::LockedAfterStep:
        return QObject::tr("OK: the unit's oscillator is locked");
    case clsKeldoX::Unlocked:
        return QObject::tr("the unit's oscillator is unlocked");
    case clsKeldoX::Refused:
        return QObject::tr("the unit refused the setting: a password is needed");
    default:
        return QObject::tr("the unit's reply was wrong or missing");
    }
}

void frmMain_KeldoX2::mDevice_StatusChange(qint32 status)
{
    const bool good = status == clsKeldoX::Good || status == clsKeldoX::LockedAfterStep;
    resumeNext(
        "formMain.DUT_StatusChange",
        [&] {
            m_ui->ShapeStatusLight->setFillColor(good ? IndicatorLight::green : IndicatorLight::red,
                                                 meaningOf(status));
        },
        [&] {
            // Good replies in between leave the text: it tells of the oscillator.
            if (status == clsKeldoX::Unlocked)
                setStatusPanel(MainPanel::unitStatus, QStringLiteral("VCO UNLOCKED"));
            else if (status == clsKeldoX::LockedAfterStep)
                setStatusPanel(MainPanel::unitStatus, QStringLiteral("OK"));
        });
}

void frmMain_KeldoX2::showCommunicationFailure()
{
    m_ui->ShapeStatusLight->setFillColor(IndicatorLight::red, tr("no unit answers"));
}

void frmMain_KeldoX2::mDevice_LinkLost()
{
    m_shown.tunable.renew();
    m_shown.reportsAreStale = true;
    resumeNext(
        "formMain.DUT_LinkLost", [this] { showCommunicationFailure(); },
        [this] { setStatusPanel(MainPanel::connection, Words::notConnected); },
        [] {
            if (const auto channels = app().channelsWindow())
                channels->showNotConnected();
        },
        [this] { showNotConnected(); }, [this] { m_reconnect->waitFor(m_shown.mDevice); });
}

void frmMain_KeldoX2::mDevice_ConfirmationChange(UnitValue value, bool confirmed)
{
    if (m_shown.reportsAreStale)
        return;
    if (value == UnitValue::Frequency)
        m_tuning->markFrequency(confirmed);
    else if (value == UnitValue::InputLimiting)
        markConfirmed(*m_ui->FrameInputLimiting, confirmed);
}

void frmMain_KeldoX2::mDevice_InputLimitingModeChange(qint16 mode)
{
    reportAndEnd("formMain.DUT_InputLimitingModeChange", [&] {
        if (!m_shown.reportsAreStale)
            ShowInputLimitingMode(mode);
    });
}

void frmMain_KeldoX2::mDevice_InputAttenChange(double decibels)
{
    showInputAttenuation(decibels);
}

void frmMain_KeldoX2::showInputAttenuation(std::optional<double> decibels)
{
    if (m_shown.reportsAreStale)
        decibels.reset();
    if (decibels && *decibels > 0)
        m_ui->ShapeOneBitLight->setFillColor(IndicatorLight::amber,
                                             numberToText(*decibels) + tr(" dB"));
    else
        m_ui->ShapeOneBitLight->setFillColor(IndicatorLight::buttonFace,
                                             decibels ? tr("off") : tr("not known"));
}

void frmMain_KeldoX2::ShowInputLimitingMode(std::int16_t mode)
{
    const bool offered = optInputLimit.all().contains(mode);
    m_inputLimitingMode = offered ? mode : std::int16_t{0};
    m_ui->FrameInputLimiting->setEnabled(offered);
    for (QRadioButton *button : optInputLimit.all())
        button->setEnabled(offered);
    m_inputLimits.select(m_inputLimitingMode);
}

void frmMain_KeldoX2::optInputLimit_Click(int index)
{
    // Refused, or not sent at all: the buttons show the mode that the unit has.
    handle(
        "frmMain.optInputLimit_Click",
        [index, unit = m_shown.mDevice] {
            unit->setInputLimitingMode(static_cast<std::int16_t>(index));
        },
        Afterwards{[this] { m_inputLimits.select(m_inputLimitingMode); }});
}

// Each step that follows a wait looks whether the unit is still the one that is shown.
void frmMain_KeldoX2::mDevice_DUTChange()
{
    const auto unit = m_shown.mDevice;
    const Still shown = m_shown.tunable.still();
    m_shown.reportsAreStale = false;
    const auto quiet = m_tuning->withoutSliderEvents();
    const auto whileShown = [&](auto step) {
        return [&, step] {
            if (shown)
                step();
        };
    };
    std::int32_t spacing = 0; // Hz
    resumeNext(
        "frmMain.mDevice_DUTChange", [&] { m_tuning->showRange(*unit); },
        whileShown([&] { spacing = unit->ChannelSpacing(); }),
        whileShown([&] { showSpacing(spacing); }), whileShown([&] { showBandwidth(*unit); }),
        whileShown([&] { m_presets->UpdateFreqs(*unit, spacing > 0); }),
        whileShown([&] { m_tuning->setPlan(unit->StartFreq(), spacing); }),
        whileShown([&] { setCurrentChannelCaption(Words::activeChannel(activeChannel())); }),
        whileShown([&] {
            const std::int16_t mode = unit->InputLimitingMode();
            if (shown)
                ShowInputLimitingMode(mode);
        }),
        whileShown([&] {
            m_presets->refresh();
            // A unit found by a search is shown at once and handed over when the search is done.
            if (!app().searchFinished)
                return;
            EnableMostControls(true);
            m_tuning->enable();
            focusFrequency();
        }));
}

void frmMain_KeldoX2::showSpacing(std::int32_t hertz)
{
    m_unitWasShown = true;
    m_ui->lblChannelSpacing->setText(numberToTextWithBlank(hertz / hertzPerKilohertz) +
                                     QStringLiteral(" kHz frequency spacing"));
}

void frmMain_KeldoX2::showBandwidth(clsKeldoX &device)
{
    const double bandwidth = device.ChanBW() / hertzPerKilohertz;
    m_ui->lblbandwidth->setText(bandwidth == 0 ? QString()
                                               : numberToTextWithBlank(bandwidth) +
                                                     QStringLiteral(" kHz channel bandwidth"));
}
