// The channel's binding: its row of controls, its unit, and what the unit's options and state
// allow. The operator's edits are in clsChannel_edits.cpp, the unit's events in
// clsChannel_events.cpp.
#include "ui/channels/clsChannel.h"

#include "app/AppState.h"
#include "core/ResumeNext.h"
#include "core/TextNumbers.h"
#include "device/clsKeldoX.h"
#include "platform/RunTimeError.h"
#include "widgets/EntryMark.h"

#include <initializer_list>

static void setVisible(std::initializer_list<QWidget *> controls, bool visible)
{
    for (QWidget *control : controls)
        control->setVisible(visible);
}

static void setEnabled(std::initializer_list<QWidget *> controls, bool enabled)
{
    for (QWidget *control : controls)
        control->setEnabled(enabled);
}

clsChannel::clsChannel(HostSource host) : m_hostSource(std::move(host))
{
    clsChannel::InitChannel();
}

void clsChannel::InitChannel()
{
    m_optionsRead = false;
    m_options = {};
    m_maximumInputAttenuation = maximumInputAttenuation;
}

void clsChannel::setIndex(std::int16_t index)
{
    m_index = index;
    m_channelNumber = index;
    reportAndEnd("clsChannel.Index", [&] {
        m_row.reset();
        m_host.reset();
        const auto host = m_hostSource();
        host->bindRow(index, weak_from_this());
        m_host = host;
    });
}

std::shared_ptr<clsKeldoX> clsChannel::unit() const
{
    if (!m_device)
        throw RunTimeError(ErrorNumber::ObjectNotSet);
    return m_device;
}

const ChannelRowControls &clsChannel::row()
{
    if (!m_host)
        throw RunTimeError(ErrorNumber::ObjectNotSet);
    if (!m_row) {
        m_row = rowOf(m_host->controls(), m_index);
        EntryMark::of(*m_row->txtChanFreq).setReading(frequencyInMHz);
    }
    return *m_row;
}

void clsChannel::setDevice(std::shared_ptr<clsKeldoX> device)
{
    if (device == m_device)
        return;
    if (m_device)
        m_device->disconnect(this);
    m_device = std::move(device);
    m_bound.renew();
    m_optionsRead = false;
    m_options = {};
    m_unitIsGone = false;
    clearRow();
    followEvents();
}

// No value of one unit stands in the row of another.
void clsChannel::clearRow()
{
    m_agcActive = false;
    if (!m_row)
        return; // nothing was ever shown in it
    for (QLineEdit *box : {m_row->txtChanFreq, m_row->txtChanAtten, m_row->txtChanInputAtten,
                           m_row->txtChanAGCoffset})
        EntryMark::of(*box).clear();
    for (QCheckBox *check : {m_row->chkChanAGC, m_row->chkChanBYP}) {
        check->setChecked(false);
        markConfirmed(*check, true);
    }
}

void clsChannel::loseUnit()
{
    m_unitIsGone = true;
    DisableControls();
    clearRow();
}

int clsChannel::ComPortNumber() const
{
    return m_device ? m_device->commPort()->PortNumber() : 0;
}

void clsChannel::setComPortNumber(int number)
{
    unit()->commPort()->setPortNumber(static_cast<std::int16_t>(number));
}

void clsChannel::showPort(const QString &caption, const QString &toolTip, const QString &text)
{
    row().optPortNum->setText(caption);
    row().optPortNum->setToolTip(toolTip);
    row().lblPortNum->setText(text);
    setVisible({row().optPortNum, row().lblPortNum}, true);
}

void clsChannel::setStatus(int status)
{
    row();
    OptionSet &options = *m_host->controls().portOptions;
    if (status == 1)
        options.select(m_index);
    else if (options.selected() == m_index)
        options.select(0);
}

// A unit without a step says that it does not know the word; anything else was garbled.
void clsChannel::readSteps(clsKeldoX &device, UnitOptions &options) const
{
    options.maximumAttenuation = device.MaxAtten();
    options.attenuationStep = device.attenStep();
    options.stepsAreGood = (options.maximumAttenuation > 0 || !options.hasAtten) &&
                           (options.attenuationStep > 0 ||
                            device.lastReply().startsWith(QLatin1String("UNRECOGNIZED COMMAND")));
}

// What the unit tells at every reading is asked once, unless it was garbled. A port that was closed
// meanwhile has told nothing.
void clsChannel::getOptions()
{
    const auto device = unit();
    const Still bound = m_bound.still();
    UnitOptions options = m_options;
    options.hasAtten = device->HasAtten();
    options.hasInputAtten = device->HasInputAtten();
    if (!options.stepsAreGood)
        readSteps(*device, options);
    options.hasAGC = device->HasAGC();
    options.hasAGCOffset = device->HasAGCOffset();
    options.hasBypass = device->HasBypass();
    if (!bound || !device->PortIsOpen())
        return;
    m_options = options;
    m_optionsRead = true;
}

// A unit that is gone is not asked: each of its silent replies takes seconds. The next try to
// connect reads the options anew.
void clsChannel::readOptionsOnce()
{
    if (!m_optionsRead && !m_unitIsGone)
        getOptions();
}

void clsChannel::ShowControls()
{
    const auto keepAlive = weak_from_this().lock();
    resumeNext(
        "clsChannel.ShowControls", [this] { readOptionsOnce(); },
        [this] {
            const ChannelRowControls &to = row();
            setVisible({to.optPortNum, to.txtChanFreq}, true);
            setVisible({to.txtChanAtten, to.udAtten, to.lbldB}, m_options.hasAtten);
            setVisible({to.txtChanInputAtten, to.udInputAtten}, m_options.hasInputAtten);
            // With the AGC, not with its offset: every unit with AGC shows what its offset is.
            setVisible({to.txtChanAGCoffset, to.udAGCOffset, to.lblAGCdB, to.chkChanAGC},
                       m_options.hasAGC);
            setVisible({to.chkChanBYP}, m_options.hasBypass);
        });
}

void clsChannel::enableLevels(bool agcOn, bool offsetEnabled)
{
    const ChannelRowControls &to = row();
    if (m_options.hasAGC)
        setEnabled({to.txtChanAGCoffset, to.udAGCOffset, to.lblAGCdB}, offsetEnabled);
    // AGC sets the attenuation itself while it runs.
    setEnabled({to.txtChanAtten, to.udAtten, to.lbldB},
               m_options.hasAGC ? !agcOn : m_options.hasAtten);
}

void clsChannel::EnableOrDisableControlsAsAppropriate()
{
    const auto keepAlive = weak_from_this().lock();
    const auto device = unit();
    const Still bound = m_bound.still();
    const Still enabled = m_enabled.still();
    if (m_unitIsGone)
        return;
    readOptionsOnce();
    const bool agcOn = m_options.hasAGC && device->AGC();
    const bool offsetEnabled = agcOn && device->HasAGCOffset();
    if (!bound || !enabled)
        return;
    const ChannelRowControls &to = row();
    setEnabled({to.lblPortNum, to.txtChanFreq}, true);
    to.chkChanAGC->setEnabled(m_options.hasAGC);
    enableLevels(agcOn, offsetEnabled);

    m_options.hasInputAtten = device->HasInputAtten();
    readInputAttenuation(*device);
    if (!bound || !enabled)
        return;
    setEnabled({to.txtChanInputAtten, to.udInputAtten}, m_options.hasInputAtten);
    to.chkChanBYP->setEnabled(m_options.hasBypass);
}

// Its reading raises no event: the row shows it, and tells the main window.
void clsChannel::readInputAttenuation(clsKeldoX &device)
{
    const Still bound = m_bound.still();
    const double decibels = inputAttenuationOf(device);
    if (!bound || m_unitIsGone)
        return;
    if (!m_options.hasInputAtten) {
        EntryMark::of(*row().txtChanInputAtten).showUnitText(numberToText(decibels));
        return;
    }
    tell(*row().txtChanInputAtten, decibels);
    const auto mainWindow = app().mainWindow;
    if (device.lastStatus() == clsKeldoX::Good && mainWindow && mainWindow->device() == m_device)
        mainWindow->showInputAttenuation(decibels);
}

// The reading of the AGC shows attenuation or offset, whichever it leaves to the operator.
void clsChannel::readAgain()
{
    const auto keepAlive = weak_from_this().lock();
    const auto device = m_device;
    if (!device || m_unitIsGone)
        return;
    const Still enabled = m_enabled.still();
    const auto ifThere = [&, before = device->silences()](bool fitted, const auto &ask) {
        return [&enabled, &device, before, fitted, ask] {
            if (fitted && enabled && device->PortIsOpen() && device->silences() == before)
                ask();
        };
    };
    resumeNext("clsChannel.readAgain", ifThere(m_options.hasAGC, [&] { device->AGC(); }),
               ifThere(m_options.hasAtten && !m_options.hasAGC, [&] { device->atten(); }),
               ifThere(m_options.hasInputAtten, [&] { readInputAttenuation(*device); }),
               ifThere(m_options.hasBypass, [&] { device->Bypass(); }));
}

void clsChannel::DisableControls()
{
    m_enabled.renew();
    if (!m_host)
        return;
    const ChannelRowControls &to = row();
    setEnabled({to.lblPortNum, to.txtChanFreq, to.txtChanAtten, to.udAtten, to.lbldB,
                to.txtChanInputAtten, to.udInputAtten, to.chkChanAGC, to.txtChanAGCoffset,
                to.udAGCOffset, to.lblAGCdB, to.chkChanBYP},
               false);
}

void clsChannel::HideControls()
{
    DisableControls();
    if (!m_host)
        return;
    const ChannelRowControls &to = row();
    setVisible({to.optPortNum, to.lblPortNum, to.txtChanFreq, to.txtChanAtten, to.udAtten, to.lbldB,
                to.txtChanInputAtten, to.udInputAtten, to.chkChanAGC, to.txtChanAGCoffset,
                to.udAGCOffset, to.lblAGCdB, to.chkChanBYP},
               false);
}
