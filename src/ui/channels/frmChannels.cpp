// The channels window: loading, and what searching and connecting tell it. Its controls are built
// in frmChannels_controls.cpp and forwarded in frmChannels_routing.cpp.
#include "ui/channels/frmChannels.h"

#include "app/AppState.h"
#include "app/Words.h"
#include "core/ResumeNext.h"
#include "core/TextNumbers.h"
#include "device/clsKeldoX.h"
#include "platform/Application.h"
#include "platform/RunTimeError.h"
#include "ui/channels/clsChannel.h"
#include "widgets/PanelStatusBar.h"

#include <QProgressBar>
#include <QTabWidget>

static constexpr double hertzPerKilohertz = 1000;

void frmChannels::bindRow(int index, std::weak_ptr<clsChannel> channel)
{
    if (index < 1 || index > channelCount)
        throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
    m_channels[index] = std::move(channel);
}

// The source names the main window, as the log always has.
void frmChannels::load()
{
    resumeNext(
        "frmMain.Form_Load",
        [this] { setWindowTitle(applicationTitle() + QStringLiteral(" - Channels")); },
        [this] {
            m_loaded = true;
            if (tabsChannels) // made later, they begin with the first
                tabsChannels->setCurrentIndex(0);
        });
}

void frmChannels::show()
{
    setWindowState(windowState() & ~Qt::WindowMinimized);
    QMainWindow::show();
    raise();
    activateWindow();
}

void frmChannels::setDevice(std::shared_ptr<clsKeldoX> device)
{
    if (mDevice)
        mDevice->disconnect(this);
    mDevice = std::move(device);
    // Until this unit has told its own.
    setStatusPanel(ChannelsPanel::firmware, QString());
    setStatusPanel(ChannelsPanel::bandwidth, QString());
    if (mDevice)
        connect(mDevice.get(), &clsKeldoX::DUTChange, this, &frmChannels::mDevice_DUTChange);
}

void frmChannels::mDevice_DUTChange()
{
    const auto device = mDevice;
    resumeNext(
        "frmChannels.mDevice_DUTChange", [this] { setStatusPanel(ChannelsPanel::unit, QString()); },
        [&] { setStatusPanel(ChannelsPanel::firmware, device->FirmwareRevision()); },
        [&] {
            const double bandwidth = device->ChanBW();
            setStatusPanel(ChannelsPanel::bandwidth,
                           bandwidth >= 1 ? numberToTextWithBlank(bandwidth / hertzPerKilohertz) +
                                                QStringLiteral(" KHZ BW")
                                          : QString());
        });
}

void frmChannels::showNotConnected()
{
    setStatusPanel(ChannelsPanel::connection, Words::notConnected);
    setStatusPanel(ChannelsPanel::firmware, QString());
    setStatusPanel(ChannelsPanel::bandwidth, QString());
}

void frmChannels::setStatusPanel(int panel, const QString &text)
{
    StatusBar->setPanelText(panel, text);
}

void frmChannels::setProgress(int value)
{
    ProgressBar1->setValue(value);
}

void frmChannels::setProgressMaximum(int maximum)
{
    ProgressBar1->setMaximum(maximum);
}

int frmChannels::progressMaximum() const
{
    return ProgressBar1->maximum();
}

void frmChannels::setProgressVisible(bool visible)
{
    ProgressBar1->setVisible(visible);
}

// Nothing of the units of the search before stays in a row: it may get another unit.
void frmChannels::prepareForSearch()
{
    clearStatusBar();
    controls().portOptions->select(0);
    for (int index = 1; index <= channelCount; ++index) {
        if (const auto &channel = app().channels[index])
            channel->HideControls();
        hideRow(index);
        for (QLineEdit *box :
             {m_controls.txtChanFreq(index), m_controls.txtChanAtten(index),
              m_controls.txtChanInputAtten(index), m_controls.txtChanAGCoffset(index)})
            box->clear();
        m_controls.chkChanAGC(index)->setChecked(false);
        m_controls.chkChanBYP(index)->setChecked(false);
    }
}

void frmChannels::clearChannelBoxes(int channel)
{
    if (!tabsChannels)
        return; // nothing was ever shown in them
    for (QLineEdit *box : {m_controls.txtChanFreq(channel), m_controls.txtChanAtten(channel),
                           m_controls.txtChanAGCoffset(channel)})
        box->clear();
}

void frmChannels::arrangeForUnitsFound()
{
    ShowColumnLabelsOnTabs();
    for (int index = 1; index <= channelCount; ++index) {
        if (m_controls.optPortNum(index)->isHidden())
            continue;
        tabsChannels->setCurrentIndex((index - 1) / channelsPerTab);
        return;
    }
}

// The values have come by the unit's events while it was connected.
void frmChannels::refreshChannelDisplays()
{
    const int connected = ChanIndex();
    if (const auto &channel = app().channels[connected])
        channel->ShowControls();
}

int frmChannels::ChanIndex() const
{
    for (int index = 1; index <= channelCount; ++index)
        if (const auto *option = m_controls.optPortNum.all().value(index);
            option && option->isChecked())
            return index;
    return 0;
}

// Written for a bar of ten panels; on a shorter one the first missing panel ends it, silently.
void frmChannels::clearStatusBar()
{
    try {
        for (int panel = 1; panel <= 10; ++panel)
            StatusBar->setPanelText(panel, QString());
    } catch (const RunTimeError &) { // NOLINT(bugprone-empty-catch)
    }
}

void frmChannels::ShowColumnLabelsOnTabs()
{
    controls();
    for (int tab = 0; tab < tabsChannels->count(); ++tab)
        for (const auto *labels :
             {&m_labels.lblChannel, &m_labels.lblChanFreq, &m_labels.lblChanAtten,
              &m_labels.lblChanInputAtten, &m_labels.lblChanAGC, &m_labels.lblChanAGCOffset,
              &m_labels.lblChanBypass})
            (*labels)(tab)->setVisible(true);
}
