// What the operator does in a channel's row, sent to the channel's unit.
#include "ui/channels/clsChannel.h"

#include "app/AppState.h"
#include "app/ConnectToDevice.h"
#include "core/TextNumbers.h"
#include "device/clsKeldoX.h"
#include "widgets/EntryMark.h"
#include "widgets/WhileDisabled.h"

#include <limits>

static Levels &levelsOf(clsKeldoX &unit)
{
    return unit;
}

void clsChannel::sendTyped(int keyCode, const QLineEdit &box, Setting setting)
{
    if (keyCode == enterKeyCode && isNumeric(box.text()))
        (levelsOf(*unit()).*setting)(numericValue(box.text()));
}

void clsChannel::txtChanAttenKeyUp(int keyCode)
{
    sendTyped(keyCode, *row().txtChanAtten, &clsKeldoX::setAtten);
}

void clsChannel::txtChanInputAttenKeyUp(int keyCode)
{
    sendTyped(keyCode, *row().txtChanInputAtten, &clsKeldoX::setInputAtten);
}

void clsChannel::txtChanAGCoffsetKeyUp(int keyCode)
{
    sendTyped(keyCode, *row().txtChanAGCoffset, &clsKeldoX::setAttenOffset);
}

// The arrows stay disabled until the value has been sent. A row that was disabled meanwhile stays
// so: the arrows go with their box.
void clsChannel::stepBy(UpDown &arrows, QLineEdit &box, double change, double lowest,
                        double highest, Setting setting)
{
    const auto device = unit();
    // What the unit has is not known: there is nothing to count from.
    if (box.text().isEmpty() && !EntryMark::of(box).hasUnitText())
        return;
    WhileDisabled hold(&arrows);
    // The number as it will be written: fractions must reach the bounds exactly.
    const double value = leadingNumber(numberToText(leadingNumber(box.text()) + change));
    if (value >= lowest && value <= highest)
        (levelsOf(*device).*setting)(value);
    if (!box.isEnabledTo(box.parentWidget()))
        hold.keepDisabled();
}

void clsChannel::udAttenDownClick()
{
    stepBy(*row().udAtten, *row().txtChanAtten, -m_options.attenuationStep, 0,
           std::numeric_limits<double>::max(), &clsKeldoX::setAtten);
}

void clsChannel::udAttenUpClick()
{
    stepBy(*row().udAtten, *row().txtChanAtten, m_options.attenuationStep,
           std::numeric_limits<double>::lowest(), m_options.maximumAttenuation,
           &clsKeldoX::setAtten);
}

// There is one step size per unit: the input attenuation steps by the output attenuation's.
void clsChannel::udInputAttenDownClick()
{
    stepBy(*row().udInputAtten, *row().txtChanInputAtten, -m_options.attenuationStep, 0,
           std::numeric_limits<double>::max(), &clsKeldoX::setInputAtten);
}

void clsChannel::udInputAttenUpClick()
{
    stepBy(*row().udInputAtten, *row().txtChanInputAtten, m_options.attenuationStep,
           std::numeric_limits<double>::lowest(), m_maximumInputAttenuation,
           &clsKeldoX::setInputAtten);
}

void clsChannel::udAGCOffsetDownClick()
{
    stepBy(*row().udAGCOffset, *row().txtChanAGCoffset, -m_options.attenuationStep,
           -m_options.maximumAttenuation, std::numeric_limits<double>::max(),
           &clsKeldoX::setAttenOffset);
}

void clsChannel::udAGCOffsetUpClick()
{
    stepBy(*row().udAGCOffset, *row().txtChanAGCoffset, m_options.attenuationStep,
           std::numeric_limits<double>::lowest(), m_options.maximumAttenuation,
           &clsKeldoX::setAttenOffset);
}

// A unit that refuses says so by its event, which puts the check mark back. A closed port sends
// nothing and raises nothing.
void clsChannel::chkChanBYPClick()
{
    const auto device = unit();
    const bool on = row().chkChanBYP->isChecked();
    if (device->PortIsOpen())
        device->setBypass(on);
    else
        row().chkChanBYP->setChecked(!on);
}

void clsChannel::chkChanAGCClick()
{
    const auto device = unit();
    const bool on = row().chkChanAGC->isChecked();
    if (!device->PortIsOpen()) {
        row().chkChanAGC->setChecked(!on);
        return;
    }
    const Still bound = m_bound.still();
    const Still enabled = m_enabled.still();
    const int silencesBefore = device->silences();
    device->setAGC(on);
    if (bound && enabled && device->silences() == silencesBefore)
        EnableOrDisableControlsAsAppropriate();
}

void clsChannel::optPortNumClick()
{
    const auto keepAlive = weak_from_this().lock();
    logEvent(QStringLiteral("clsChannel"),
             QStringLiteral("optPortNumClick ") + numberToTextWithBlank(m_index));
    if (const auto inTable = app().devices[m_index])
        setDevice(inTable);
    const auto before = m_device;
    if (m_unitIsGone || !before || !before->isInitialized())
        InitChannel();
    m_optionsRead = false;
    m_unitIsGone = false;
    m_unitAnswered = false;
    DisableControls();
    clearRow();
    const Still bound = m_bound.still();
    auto device = before;
    ConnectToDevice(device, m_index);
    if (bound)
        setDevice(device);
    // Nothing answered, or it is gone already: the port option remains to try again.
    if (!m_unitAnswered || m_unitIsGone || !device->PortIsOpen())
        loseUnit();
}
