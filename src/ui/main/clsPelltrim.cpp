// The fine-tuning binder.
#include "ui/main/clsPelltrim.h"

#include "app/Handlers.h"
#include "core/ResumeNext.h"
#include "core/TextNumbers.h"
#include "widgets/EntryEvents.h"
#include "widgets/EntryMark.h"
#include "widgets/WhileDisabled.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QLineEdit>
#include <QMouseEvent>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>

clsPelltrim::clsPelltrim(QScrollBar *scrollBar, QLineEdit *textBox, QCheckBox *checkBox,
                         QWidget *frame)
    : mHScrollZN(scrollBar), mtxtZN(textBox), mchkZNcal(checkBox), m_frame(frame)
{
    connect(mHScrollZN, &QScrollBar::valueChanged, this, &clsPelltrim::mHScrollZN_Change);
    connect(mHScrollZN, &QScrollBar::sliderMoved, this, &clsPelltrim::mHScrollZN_Scroll);
    connect(mHScrollZN, &QScrollBar::sliderReleased, this, &clsPelltrim::mHScrollZN_Released);
    connect(mchkZNcal, &QCheckBox::clicked, this, &clsPelltrim::mchkZNcal_Click);
    const auto *entry = EntryEvents::watch(mtxtZN);
    connect(entry, &EntryEvents::EnterUp, this, [this] { mtxtZN_Enter("clsZN.mtxtZN_KeyUp"); });
    connect(entry, &EntryEvents::DblClick, this, [this] { mtxtZN_Enter("clsZN.mtxtZN_DblClick"); });
}

void clsPelltrim::setDevice(std::shared_ptr<clsKeldoX> device)
{
    if (mDevice)
        disconnect(mDevice.get(), nullptr, this, nullptr);
    mDevice = std::move(device);
    m_tunable.renew();
    m_reportsAreStale = false;
    m_setting.reset();
    m_waiting.reset();
    if (!mDevice)
        return;
    const clsKeldoX *unit = mDevice.get();
    connect(unit, &clsKeldoX::DUTChange, this, &clsPelltrim::mDevice_DUTChange);
    connect(unit, &clsKeldoX::ZNChange, this, &clsPelltrim::mDevice_ZNChange);
    connect(unit, &clsKeldoX::ZNcalModeChange, this, &clsPelltrim::mDevice_ZNcalModeChange);
    connect(unit, &clsKeldoX::ConfirmationChange, this, &clsPelltrim::mDevice_ConfirmationChange);
    connect(unit, &clsKeldoX::LinkLost, this, [this] {
        m_reportsAreStale = true;
        DisableControls();
    });
}

void clsPelltrim::DisableControls()
{
    m_tunable.renew();
    m_waiting.reset();
    m_setting.reset();
    EntryMark::of(*mtxtZN).clear();
    markConfirmed(*mchkZNcal, true);
    m_calibrated = false;
    mchkZNcal->setChecked(false);
    moveScrollBar(mHScrollZN->minimum());
    mHScrollZN->setEnabled(false);
    mtxtZN->setEnabled(false);
    mchkZNcal->setEnabled(false);
    m_frame->setEnabled(false);
}

void clsPelltrim::mDevice_DUTChange()
{
    m_reportsAreStale = false;
    reportAndEnd("clsZN.DUT_DUTChange", [this] {
        const auto unit = mDevice;
        // The reading of the set-up raises the setting before it has been read.
        m_setting.reset();
        EntryMark::of(*mtxtZN).clear();
        if (unit->HasPelltrim())
            showUnit(*unit);
        else
            DisableControls();
    });
}

void clsPelltrim::showUnit(clsKeldoX &unit)
{
    const Still tunable = m_tunable.still();
    {
        const QScopedValueRollback quiet(m_eventsEnabled, false);
        mHScrollZN->setRange(clsKeldoX::MinPelltrimAbsoluteSetting,
                             clsKeldoX::MaxPelltrimAbsoluteSetting);
    }
    m_frame->setEnabled(true);
    m_calibrated = unit.ZN_calMode();
    mchkZNcal->setChecked(m_calibrated);
    // In calibrated mode the unit uses its calibration value, whatever was set.
    const std::int16_t clicks = m_calibrated ? unit.PelltrimCal() : unit.Pelltrim();
    if (!tunable)
        return;
    mchkZNcal->setEnabled(true);
    if (!m_calibrated && !m_setting && unit.lastStatus() != clsKeldoX::Good)
        return; // it could not be read: the controls stay empty and disabled
    showClicks(clicks);
    enableFor(m_calibrated);
}

void clsPelltrim::readAgain()
{
    const auto unit = mDevice;
    if (unit && unit->HasPelltrim())
        showUnit(*unit);
}

void clsPelltrim::enableFor(bool calibrated)
{
    if (calibrated)
        m_tunable.renew();
    mHScrollZN->setEnabled(!calibrated);
    mtxtZN->setEnabled(!calibrated);
}

void clsPelltrim::mchkZNcal_Click()
{
    if (!mchkZNcal->isEnabled())
        return;
    const bool on = mchkZNcal->isChecked();
    handle(
        "clsZN.mchkZNcal_Click", [&] { setCalMode(on); },
        IfRefused{[this] { mchkZNcal->setChecked(m_calibrated); }});
}

// The unit may refuse the mode, and old ones have none: the controls follow what it really has.
void clsPelltrim::setCalMode(bool on)
{
    const auto unit = mDevice;
    const Still tunable = m_tunable.still();
    unit->setZN_calMode(on);
    if (!tunable)
        return;
    mchkZNcal->setChecked(m_calibrated);
    enableFor(m_calibrated);
    if (m_calibrated)
        showClicks(unit->PelltrimCal());
    else if (!on)
        unit->Pelltrim(); // its event shows it
}

void clsPelltrim::mHScrollZN_Change()
{
    if (!mHScrollZN->isEnabled() || !m_eventsEnabled)
        return;
    const auto clicks = static_cast<std::int16_t>(mHScrollZN->value());
    if (m_sending || !app().guard().isUp()) {
        send(clicks);
        return;
    }
    const Still tunable = m_tunable.still();
    WhileDisabled hold(mHScrollZN);
    send(clicks);
    if (!tunable)
        hold.keepDisabled();
}

void clsPelltrim::mHScrollZN_Scroll(int position)
{
    if (m_eventsEnabled)
        send(static_cast<std::int16_t>(position));
}

// A drag that ends where it began changes no value: the bar shows again what the unit has.
void clsPelltrim::mHScrollZN_Released()
{
    if (mHScrollZN->sliderPosition() == mHScrollZN->value() && !m_sending && m_setting)
        moveScrollBar(*m_setting);
}

void clsPelltrim::mtxtZN_Enter(const char *source)
{
    reportAndEnd(source, [this] {
        const QString text = mtxtZN->text();
        // Not limited to 0 to 255: what fits is the unit's business.
        if (isNumeric(text) && (m_sending || app().guard().isUp()))
            send(toInt16(numericValue(text)));
    });
}

void clsPelltrim::send(std::int16_t clicks)
{
    if (m_sending) {
        m_waiting = clicks;
        return;
    }
    handle(
        "clsZN.mHScrollZN_Change", [&] { sendAllWaiting(clicks); }, IfRefused{[this] {
            endDrag();
            if (m_setting)
                showClicks(*m_setting);
        }});
}

void clsPelltrim::sendAllWaiting(std::int16_t clicks)
{
    const QScopedValueRollback sending(m_sending, true);
    const auto unit = mDevice;
    const Still tunable = m_tunable.still();
    std::optional<std::int16_t> next = clicks;
    while (next && tunable) {
        m_waiting.reset();
        unit->setPelltrim(*next);
        if (unit->lastStatus() != clsKeldoX::Good) {
            // Refused, or a box told of a bad reply: the hand is no longer on the thumb.
            m_waiting.reset();
            endDrag();
        }
        next = m_waiting;
    }
}

void clsPelltrim::endDrag()
{
    if (!mHScrollZN->isSliderDown())
        return;
    const QScopedValueRollback quiet(m_eventsEnabled, false);
    mHScrollZN->setSliderPosition(mHScrollZN->value());
    // Also the bar's own memory of the pressed button ends, else it follows the mouse on.
    const QPointF at(-1, -1);
    QMouseEvent release(QEvent::MouseButtonRelease, at, mHScrollZN->mapToGlobal(at), Qt::LeftButton,
                        Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(mHScrollZN, &release);
    mHScrollZN->setSliderDown(false);
    if (m_setting)
        moveScrollBar(*m_setting);
}

void clsPelltrim::mDevice_ZNChange(qint16 setting)
{
    reportAndEnd("clsZN.DUT_ZNChange", [&] {
        // After a failure it is the setting from before, which is no news where none is known.
        if (!m_reportsAreStale && (m_setting || mDevice->lastStatus() == clsKeldoX::Good))
            showClicks(setting);
    });
}

void clsPelltrim::showClicks(std::int16_t clicks)
{
    m_setting = clicks;
    EntryMark::of(*mtxtZN).showUnitText(numberToText(clicks));
    // The thumb that the operator holds stays where the hand is.
    if (!mHScrollZN->isSliderDown())
        moveScrollBar(clicks);
}

void clsPelltrim::moveScrollBar(int value)
{
    if (mHScrollZN->value() == value)
        return;
    const QScopedValueRollback quiet(m_eventsEnabled, false);
    mHScrollZN->setValue(std::clamp(value, mHScrollZN->minimum(), mHScrollZN->maximum()));
}

void clsPelltrim::mDevice_ZNcalModeChange(const bool &on)
{
    m_calibrated = on;
    mchkZNcal->setChecked(on);
}

void clsPelltrim::mDevice_ConfirmationChange(UnitValue value, bool confirmed)
{
    if (m_reportsAreStale)
        return;
    if (value == UnitValue::Pelltrim)
        EntryMark::of(*mtxtZN).setConfirmed(confirmed);
    else if (value == UnitValue::CalMode)
        markConfirmed(*mchkZNcal, confirmed);
}
