// The channels window's control events: under the guard, each goes to the channel of its index.
#include "ui/channels/frmChannels.h"

#include "app/WhileGuarded.h"
#include "core/ResumeNext.h"
#include "core/TextNumbers.h"
#include "device/clsKeldoX.h"
#include "discovery/PortSearch.h"
#include "platform/RunTimeError.h"
#include "ui/channels/clsChannel.h"

std::shared_ptr<clsChannel> frmChannels::channelAt(int index) const
{
    m_controls.optPortNum(index); // raises 9 where there is no such row
    auto channel = m_channels.value(index).lock();
    if (!channel)
        throw RunTimeError(ErrorNumber::ObjectNotSet);
    return channel;
}

// Tells whether the guard let it through.
bool frmChannels::forward(const char *source, int index, Handler handler)
{
    return whileGuarded([&] {
        reportAndEnd(source, [&] {
            const auto channel = channelAt(index);
            (channel.get()->*handler)();
        });
    });
}

bool frmChannels::forwardKey(const char *source, int index, int keyCode, KeyHandler handler)
{
    return whileGuarded([&] {
        reportAndEnd(source, [&] {
            const auto channel = channelAt(index);
            (channel.get()->*handler)(keyCode);
        });
    });
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
void frmChannels::putBack(const ControlArray<QCheckBox> &checks, int index)
{
    if (QCheckBox *check = checks.all().value(index))
        check->toggle();
}

void frmChannels::chkChanAGC_Click(int index)
{
    if (!forward("frmChannels.chkChanAGC_Click", index, &clsChannel::chkChanAGCClick))
        putBack(m_controls.chkChanAGC, index);
}

void frmChannels::chkChanBYP_Click(int index)
{
    if (!forward("frmChannels.chkChanBYP_Click", index, &clsChannel::chkChanBYPClick))
        putBack(m_controls.chkChanBYP, index);
}

void frmChannels::txtChanAtten_KeyUp(int index, int keyCode)
{
    forwardKey("frmChannels.txtChanAtten_KeyUp", index, keyCode, &clsChannel::txtChanAttenKeyUp);
}

void frmChannels::txtChanInputAtten_KeyUp(int index, int keyCode)
{
    forwardKey("frmChannels.txtChanInputAtten_KeyUp", index, keyCode,
               &clsChannel::txtChanInputAttenKeyUp);
}

void frmChannels::txtChanAGCoffset_KeyUp(int index, int keyCode)
{
    forwardKey("frmChannels.txtChanAGCoffset_KeyUp", index, keyCode,
               &clsChannel::txtChanAGCoffsetKeyUp);
}

void frmChannels::optPortNum_Click(int index)
{
    if (index > 0)
        forward("frmChannels.optPortNum_Click", index, &clsChannel::optPortNumClick);
}

void frmChannels::onPortOptionClick(int index, int previous)
{
    if (app().guard().isUp())
        optPortNum_Click(index);
    else
        m_controls.portOptions->select(previous);
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
    whileGuarded([&] {
        reportAndEnd("frmMain.txtChanFreq_KeyUp", [&] {
            const auto megahertz = numberWithUnit(m_controls.txtChanFreq(index)->text());
            if (megahertz)
                tune(channelAt(index)->Device(), *megahertz);
        });
    });
}

void frmChannels::txtChanFreq_DblClick(int index)
{
    whileGuarded([&] {
        reportAndEnd("frmMain_KeldoX2.txtChanFreq_DblClick", [&] {
            const double megahertz = leadingNumber(m_controls.txtChanFreq(index)->text());
            if (megahertz > 0)
                tune(channelAt(index)->Device(), megahertz);
        });
    });
}

void frmChannels::Form_KeyPress(int character)
{
    if (character != escapeCharacter)
        return;
    m_escape = true;
    if (const auto search = app().search)
        search->cancel();
}
