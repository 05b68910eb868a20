// What a unit tells of itself, shown in its channel's row.
#include "ui/channels/clsChannel.h"

#include "core/ResumeNext.h"
#include "core/TextNumbers.h"
#include "device/clsKeldoX.h"
#include "widgets/EntryMark.h"

#include <QScopeGuard>

// Units that may lack what they are asked for answer with an error word, which is no news: no box.
template <class Ask> static double askQuietly(clsKeldoX &device, bool quiet, Ask ask)
{
    if (!quiet)
        return (device.*ask)();
    const auto putBack = qScopeGuard(
        [&device, displayed = device.displaysErrors()] { device.setDisplayErrors(displayed); });
    device.setDisplayErrors(false);
    return (device.*ask)();
}

double clsChannel::offsetOf(clsKeldoX &device) const
{
    return askQuietly(device, !m_options.hasAGCOffset, &clsKeldoX::attenOffset);
}

double clsChannel::inputAttenuationOf(clsKeldoX &device) const
{
    return askQuietly(device, !m_options.hasInputAtten, &clsKeldoX::InputAtten);
}

void clsChannel::followEvents()
{
    if (!m_device)
        return;
    const clsKeldoX *device = m_device.get();
    connect(device, &clsKeldoX::AGCChange, this, &clsChannel::m_Device_AGCChange);
    connect(device, &clsKeldoX::FreqChange, this, &clsChannel::m_Device_FreqChange);
    connect(device, &clsKeldoX::AttenChange, this, &clsChannel::m_Device_AttenChange);
    connect(device, &clsKeldoX::InputAttenChange, this, &clsChannel::m_Device_InputAttenChange);
    connect(device, &clsKeldoX::BypassChange, this, &clsChannel::m_Device_BypassChange);
    connect(device, &clsKeldoX::AGCOffsetChange, this, &clsChannel::m_Device_AGCOffsetChange);
    connect(device, &clsKeldoX::DUTChange, this, &clsChannel::m_Device_DUTChange);
    connect(device, &clsKeldoX::LinkLost, this, &clsChannel::loseUnit);
    connect(device, &clsKeldoX::ConfirmationChange, this, &clsChannel::m_Device_ConfirmationChange);
}

// After a failed exchange an event tells the value from before, which is no news where none is
// known: the box stays empty.
void clsChannel::tell(QLineEdit &box, double value)
{
    const std::int32_t status = unit()->lastStatus();
    const bool failed = status == clsKeldoX::BadReply || status == clsKeldoX::Refused;
    auto &mark = EntryMark::of(box);
    if (!m_unitIsGone && !(failed && !mark.hasUnitText()))
        mark.showUnitText(numberToText(value));
}

void clsChannel::m_Device_AGCChange(bool agcOn)
{
    const auto keepAlive = weak_from_this().lock();
    if (m_unitIsGone)
        return;
    reportAndEnd("clsChannel.m_Device_AGCChange", [&] {
        const auto device = unit();
        const Still bound = m_bound.still();
        const ChannelRowControls &to = row();
        m_agcActive = agcOn;
        to.chkChanAGC->setChecked(agcOn);
        if (device->fellSilent())
            return; // one wait is enough; the mark says that nobody knows
        if (agcOn) {
            EntryMark::of(*to.txtChanAtten).clear();
            const double offset = offsetOf(*device);
            if (bound)
                tell(*to.txtChanAGCoffset, offset);
            return;
        }
        EntryMark::of(*to.txtChanAGCoffset).clear();
        if (!m_options.hasAtten)
            return;
        const double attenuation = device->atten();
        if (bound)
            tell(*to.txtChanAtten, attenuation);
    });
}

// The event's frequency is made of start, step and spacing, of which some may be missing.
static bool isKnownPlace(clsKeldoX &unit, qint32 step, double freqMHz)
{
    if (!unit.isInitialized())
        return true;
    const double start = unit.StartFreq(); // kept: nothing is sent
    return start > 0 && (step == 0 || freqMHz != start);
}

void clsChannel::m_Device_FreqChange(qint32 step, double freqMHz)
{
    if (m_host && isKnownPlace(*unit(), step, freqMHz))
        tell(*row().txtChanFreq, freqMHz);
}

void clsChannel::m_Device_AttenChange(double decibels)
{
    if (!m_host)
        return;
    // Emptied first, so that a value that is set again is seen to be written again.
    row().txtChanAtten->clear();
    tell(*row().txtChanAtten, decibels);
}

void clsChannel::m_Device_InputAttenChange(double decibels)
{
    if (!m_host)
        return;
    row().txtChanInputAtten->clear();
    tell(*row().txtChanInputAtten, decibels);
}

void clsChannel::m_Device_BypassChange(bool on)
{
    if (m_host && !m_unitIsGone)
        row().chkChanBYP->setChecked(on);
}

void clsChannel::m_Device_AGCOffsetChange(double decibels)
{
    if (m_host)
        tell(*row().txtChanAGCoffset, decibels);
}

void clsChannel::m_Device_ConfirmationChange(UnitValue value, bool confirmed)
{
    if (!m_host || m_unitIsGone)
        return;
    const auto box = [confirmed](QLineEdit *entry) {
        EntryMark::of(*entry).setConfirmed(confirmed);
    };
    switch (value) {
    case UnitValue::Frequency:
        return box(row().txtChanFreq);
    case UnitValue::Attenuation:
        return box(row().txtChanAtten);
    case UnitValue::InputAttenuation:
        return box(row().txtChanInputAtten);
    case UnitValue::AGCOffset:
        return box(row().txtChanAGCoffset);
    case UnitValue::AGC:
        return markConfirmed(*row().chkChanAGC, confirmed);
    case UnitValue::Bypass:
        return markConfirmed(*row().chkChanBYP, confirmed);
    default:
        return; // shown by the main window alone
    }
}

void clsChannel::showOffset(clsKeldoX &device)
{
    const Still bound = m_bound.still();
    const double offset = device.HasAGCOffset() ? device.attenOffset() : 0;
    if (bound)
        tell(*row().txtChanAGCoffset, offset);
}

void clsChannel::m_Device_DUTChange()
{
    static const char source[] = "clsChannel.m_Device_DUTChange";
    const auto keepAlive = weak_from_this().lock();
    std::shared_ptr<clsKeldoX> device;
    if (!reportAndEnd(source, [&] {
            row();
            device = unit();
        }))
        return;
    // Unplugged, or broken off, while it was read in: it has told nothing that counts.
    if (!device->PortIsOpen())
        return;
    m_unitAnswered = true;
    m_unitIsGone = false;
    const Still bound = m_bound.still();
    const Still enabled = m_enabled.still();
    const auto ifStill = [&](const auto &step) {
        return [&] {
            if (bound && enabled)
                step();
        };
    };
    const auto bypass = [&] {
        const bool on = device->HasBypass() && device->Bypass();
        if (bound)
            row().chkChanBYP->setChecked(on);
    };
    const auto offset = [&] { showOffset(*device); };
    const auto show = [&] { ShowControls(); };
    const auto enable = [&] { EnableOrDisableControlsAsAppropriate(); };
    const auto complete = [&] { showWhatNoEventTells(*device); };
    resumeNext(source, ifStill(bypass), ifStill(offset), ifStill(show), ifStill(enable),
               ifStill(complete));
}

void clsChannel::showWhatNoEventTells(clsKeldoX &device)
{
    // The reading of the AGC in between has emptied the offset box.
    if (!m_options.hasAGCOffset)
        EntryMark::of(*row().txtChanAGCoffset).showUnitText(QStringLiteral("0"));
    // A unit without AGC has not told its attenuation, and the arrows count from the box.
    if (!m_options.hasAGC && m_options.hasAtten)
        device.atten(); // shown by its event
}
