// What a unit tells of itself, shown in its channel's row.
#include "ui/channels/clsChannel.h"

#include "core/ResumeNext.h"
#include "core/TextNumbers.h"
#include "device/clsKeldoX.h"

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
    connect(device, &clsKeldoX::LinkLost, this, &clsChannel::onLinkLost);
}

void clsChannel::m_Device_AGCChange(bool agcOn)
{
    const auto keepAlive = weak_from_this().lock();
    reportAndEnd("clsChannel.m_Device_AGCChange", [&] {
        const auto device = unit();
        const Still bound = m_bound.still();
        const ChannelRowControls &to = row();
        m_agcActive = agcOn;
        to.chkChanAGC->setChecked(agcOn);
        if (agcOn) {
            to.txtChanAtten->clear();
            const double offset = offsetOf(*device);
            if (bound)
                to.txtChanAGCoffset->setText(numberToText(offset));
            return;
        }
        to.txtChanAGCoffset->clear();
        if (!m_options.hasAtten)
            return;
        const double attenuation = device->atten();
        if (bound)
            to.txtChanAtten->setText(numberToText(attenuation));
    });
}

void clsChannel::m_Device_FreqChange(qint32 /*step*/, double freqMHz)
{
    if (m_row)
        m_row->txtChanFreq->setText(numberToText(freqMHz));
}

// Emptied first, so that a value that is set again is seen to be written again.
static void rewrite(QLineEdit &box, double value)
{
    box.clear();
    box.setText(numberToText(value));
}

void clsChannel::m_Device_AttenChange(double decibels)
{
    if (m_row)
        rewrite(*m_row->txtChanAtten, decibels);
}

void clsChannel::m_Device_InputAttenChange(double decibels)
{
    if (m_row)
        rewrite(*m_row->txtChanInputAtten, decibels);
}

void clsChannel::m_Device_BypassChange(bool on)
{
    if (m_row)
        m_row->chkChanBYP->setChecked(on);
}

void clsChannel::m_Device_AGCOffsetChange(double decibels)
{
    if (m_row)
        m_row->txtChanAGCoffset->setText(numberToText(decibels));
}

void clsChannel::showOffset(clsKeldoX &device)
{
    const Still bound = m_bound.still();
    const double offset = device.HasAGCOffset() ? device.attenOffset() : 0;
    if (bound)
        row().txtChanAGCoffset->setText(numberToText(offset));
}

void clsChannel::m_Device_DUTChange()
{
    static const char source[] = "clsChannel.m_Device_DUTChange";
    const auto keepAlive = weak_from_this().lock();
    m_unitAnswered = true;
    m_connectFailed = false;
    std::shared_ptr<clsKeldoX> device;
    if (!reportAndEnd(source, [&] {
            row();
            device = unit();
        }))
        return;
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
        row().txtChanAGCoffset->setText(QStringLiteral("0"));
    // A unit without AGC has not told its attenuation, and the arrows count from the box.
    if (!m_options.hasAGC && m_options.hasAtten)
        device.atten(); // shown by its event
}

void clsChannel::onLinkLost()
{
    DisableControls();
}
