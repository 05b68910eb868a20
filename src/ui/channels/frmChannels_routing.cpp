// The channels window's control events: under the guard, each goes to the channel of its index.
#include "ui/channels/frmChannels.h"

#include "app/Handlers.h"
#include "app/Progress.h"
#include "core/TextNumbers.h"
#include "device/clsKeldoX.h"
#include "platform/RunTimeError.h"
#include "ui/channels/clsChannel.h"

#include <functional>

std::shared_ptr<clsChannel> frmChannels::channelAt(int index)
{
    controls().optPortNum(index); // raises 9 where there is no such row
    auto channel = m_channels.value(index).lock();
    if (!channel)
        throw RunTimeError(ErrorNumber::ObjectNotSet);
    return channel;
}

template <class Handler, class... PutBack>
void frmChannels::forward(const char *source, int index, Handler handler, const PutBack &...putBack)
{
    handle(
        source, [&] { std::invoke(handler, *channelAt(index)); }, putBack...);
}

void frmChannels::udAtten_UpClick(int index)
{
    forward("frmChannels.udAtten_UpClick", index, &clsChannel::udAttenUpClick);
}

void frmChannels::udAtten_DownClick(int index)
{
    forward("frmChannels.udAtten_DownClick", index, &clsChannel::udAttenDownClick);
}

void frmChannels::udInputAtten_UpClick(int index)
{
    forward("frmChannels.udInputAtten_UpClick", index, &clsChannel::udInputAttenUpClick);
}

void frmChannels::udInputAtten_DownClick(int index)
{
    forward("frmChannels.udInputAtten_DownClick", index, &clsChannel::udInputAttenDownClick);
}

// The offset's arrows report under the attenuation arrows' names, deliberately.
void frmChannels::udAGCOffset_UpClick(int index)
{
    forward("frmChannels.udAtten_UpClick", index, &clsChannel::udAGCOffsetUpClick);
}

void frmChannels::udAGCOffset_DownClick(int index)
{
    forward("frmChannels.udAtten_DownClick", index, &clsChannel::udAGCOffsetDownClick);
}

// The click has toggled the box already; refused, it shows again what is true.
static auto toggleBack(const ControlArray<QCheckBox> &checks, int index)
{
    return IfRefused{[check = checks.all().value(index)] {
        if (check)
            check->toggle();
    }};
}

void frmChannels::chkChanAGC_Click(int index)
{
    forward("frmChannels.chkChanAGC_Click", index, &clsChannel::chkChanAGCClick,
            toggleBack(controls().chkChanAGC, index));
}

void frmChannels::chkChanBYP_Click(int index)
{
    forward("frmChannels.chkChanBYP_Click", index, &clsChannel::chkChanBYPClick,
            toggleBack(controls().chkChanBYP, index));
}

void frmChannels::txtChanAtten_KeyUp(int index, int keyCode)
{
    forward("frmChannels.txtChanAtten_KeyUp", index,
            [&](clsChannel &channel) { channel.txtChanAttenKeyUp(keyCode); });
}

void frmChannels::txtChanInputAtten_KeyUp(int index, int keyCode)
{
    forward("frmChannels.txtChanInputAtten_KeyUp", index,
            [&](clsChannel &channel) { channel.txtChanInputAttenKeyUp(keyCode); });
}

void frmChannels::txtChanAGCoffset_KeyUp(int index, int keyCode)
{
    forward("frmChannels.txtChanAGCoffset_KeyUp", index,
            [&](clsChannel &channel) { channel.txtChanAGCoffsetKeyUp(keyCode); });
}

static const char connectSource[] = "frmChannels.optPortNum_Click";

void frmChannels::optPortNum_Click(int index)
{
    if (index > 0)
        forward(connectSource, index, &clsChannel::optPortNumClick);
}

void frmChannels::onPortOptionClick(int index, int previous)
{
    forward(connectSource, index, &clsChannel::optPortNumClick,
            IfRefused{[&] { m_controls.portOptions->select(previous); }});
}

static void tune(const std::shared_ptr<clsKeldoX> &device, double megahertz)
{
    if (!device)
        throw RunTimeError(ErrorNumber::ObjectNotSet);
    device->setCurrentFreq(megahertz);
}

void frmChannels::txtChanFreq_KeyUp(int index, int keyCode)
{
    if (keyCode != clsChannel::enterKeyCode)
        return;
    handle("frmMain.txtChanFreq_KeyUp", [&] {
        if (const auto megahertz = frequencyInMHz(controls().txtChanFreq(index)->text()))
            tune(channelAt(index)->Device(), *megahertz);
    });
}

void frmChannels::txtChanFreq_DblClick(int index)
{
    handle("frmMain_KeldoX2.txtChanFreq_DblClick", [&] {
        const double megahertz = leadingFrequencyInMHz(controls().txtChanFreq(index)->text());
        if (megahertz > 0)
            tune(channelAt(index)->Device(), megahertz);
    });
}

void frmChannels::Form_KeyPress(int character)
{
    if (character != escapeCharacter)
        return;
    m_escape = true;
    cancelRunning();
}
