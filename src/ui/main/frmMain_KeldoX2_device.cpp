// How the main window follows the unit: its events become displays, and its requests are answered.
#include "ui/main/frmMain_KeldoX2.h"

#include "app/Handlers.h"
#include "app/Reconnect.h"
#include "app/Units.h"
#include "app/Words.h"
#include "app/modMain_KeldoX2.h"
#include "core/ResumeNext.h"
#include "core/TextNumbers.h"
#include "ui/main/InputLimiting.h"
#include "ui/main/PasswordRequest.h"
#include "ui/main/PlanCaptions.h"
#include "ui/main/Presets.h"
#include "ui/main/Tuning.h"
#include "ui/main/clsPelltrim.h"
#include "ui_frmMain_KeldoX2.h"
#include "widgets/EntryMark.h"

// Emptied first: no value of the unit before stands under this one's name.
void frmMain_KeldoX2::setDevice(std::shared_ptr<clsKeldoX> device)
{
    if (m_shown.mDevice)
        disconnect(m_shown.mDevice.get(), nullptr, this, nullptr);
    m_shown.mDevice = device ? std::move(device) : makeUnit();
    m_shown.reportsAreStale = false;
    disableUnitControls();
    clearUnit();
    m_ui->ShapeStatusLight->setFillColor(IndicatorLight::buttonFace,
                                         tr("no unit has been asked yet"));
    followEvents();
    // The fine-tuning controls hear the unit after the window.
    if (Pelltrim)
        Pelltrim->setDevice(m_shown.mDevice);
}

void frmMain_KeldoX2::followEvents()
{
    const clsKeldoX *unit = m_shown.mDevice.get();
    m_password->follow(*unit);
    connect(unit, &clsKeldoX::StatusChange, this, &frmMain_KeldoX2::mDevice_StatusChange);
    m_limiting->follow(*unit);
    connect(unit, &clsKeldoX::InputAttenChange, this, &frmMain_KeldoX2::showInputAttenuation);
    m_tuning->follow(*unit);
    connect(unit, &clsKeldoX::DUTChange, this, &frmMain_KeldoX2::mDevice_DUTChange);
    connect(unit, &clsKeldoX::LinkLost, this, &frmMain_KeldoX2::mDevice_LinkLost);
    connect(unit, &clsKeldoX::ConfirmationChange, this,
            &frmMain_KeldoX2::mDevice_ConfirmationChange);
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

void frmMain_KeldoX2::showCommunicationFailure(bool cancelled)
{
    m_ui->ShapeStatusLight->setFillColor(
        IndicatorLight::red, cancelled ? tr("connecting was cancelled") : tr("no unit answers"));
}

void frmMain_KeldoX2::mDevice_LinkLost()
{
    m_shown.tunable.renew();
    m_shown.reportsAreStale = true;
    resumeNext(
        "formMain.DUT_LinkLost", [this] { showCommunicationFailure(false); },
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
        m_limiting->mark(confirmed);
    else if (value == UnitValue::InputAttenuation)
        markConfirmed(*m_ui->ShapeOneBitLight, confirmed);
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

// Each step that follows a wait looks whether the unit is still the one that is shown.
void frmMain_KeldoX2::mDevice_DUTChange()
{
    const auto unit = m_shown.mDevice;
    const Still shown = m_shown.tunable.still();
    m_shown.reportsAreStale = false;
    const auto quiet = m_tuning->withoutSliderEvents();
    const auto whileShown = [&](auto step) {
        return [&, step] {
            if (shown && unit->PortIsOpen())
                step();
        };
    };
    std::int32_t spacing = 0; // Hz
    resumeNext(
        "frmMain.mDevice_DUTChange", [&] { m_tuning->showRange(*unit); },
        whileShown([&] { spacing = unit->ChannelSpacing(); }),
        whileShown([&] { m_captions->showSpacing(spacing); }),
        whileShown([&] { m_captions->showBandwidth(*unit); }),
        whileShown([&] { m_presets->UpdateFreqs(*unit, spacing > 0); }),
        whileShown([&] { m_tuning->setPlan(unit->StartFreq(), spacing); }),
        whileShown([&] { setCurrentChannelCaption(Words::activeChannel(activeChannel())); }),
        whileShown([&] {
            const std::int16_t mode = unit->InputLimitingMode();
            if (shown)
                m_limiting->ShowInputLimitingMode(mode);
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
