// How the channels window's controls reach their handlers, and what the window notices by itself.
#include "ui/channels/frmChannels.h"

#include "app/Progress.h"
#include "app/Words.h"
#include "ui/channels/clsChannel.h"
#include "widgets/EntryEvents.h"
#include "widgets/SearchStrip.h"

#include <QEvent>
#include <QKeyEvent>
#include <QShortcut>
#include <QTabWidget>

frmChannels::frmChannels()
{
    setObjectName(QStringLiteral("frmChannels"));
    buildStatusBar();
}

// Start-up shows no row, and making them took a tenth of it.
const ChannelControls &frmChannels::controls()
{
    if (tabsChannels)
        return m_controls;
    buildTabs();
    addShortcuts();
    for (int index = 1; index <= channelCount; ++index) {
        connectControls(index);
        connectBoxes(index);
    }
    connect(m_controls.portOptions, &OptionSet::Click, this, &frmChannels::onPortOptionClick);
    return m_controls;
}

frmChannels::~frmChannels() = default;

void frmChannels::connectControls(int index)
{
    const auto click = [this, index](auto *control, auto signal,
                                     void (frmChannels::*handler)(int)) {
        connect(control, signal, this, [this, index, handler] { (this->*handler)(index); });
    };
    click(m_controls.udAtten(index), &UpDown::UpClick, &frmChannels::udAtten_UpClick);
    click(m_controls.udAtten(index), &UpDown::DownClick, &frmChannels::udAtten_DownClick);
    click(m_controls.udInputAtten(index), &UpDown::UpClick, &frmChannels::udInputAtten_UpClick);
    click(m_controls.udInputAtten(index), &UpDown::DownClick, &frmChannels::udInputAtten_DownClick);
    click(m_controls.udAGCOffset(index), &UpDown::UpClick, &frmChannels::udAGCOffset_UpClick);
    click(m_controls.udAGCOffset(index), &UpDown::DownClick, &frmChannels::udAGCOffset_DownClick);
    click(m_controls.chkChanAGC(index), &QCheckBox::clicked, &frmChannels::chkChanAGC_Click);
    click(m_controls.chkChanBYP(index), &QCheckBox::clicked, &frmChannels::chkChanBYP_Click);
}

void frmChannels::connectBoxes(int index)
{
    const auto enter = [this, index](QLineEdit *box, void (frmChannels::*handler)(int, int)) {
        const auto *entry = EntryEvents::watch(box);
        connect(entry, &EntryEvents::EnterUp, this,
                [this, index, handler] { (this->*handler)(index, clsChannel::enterKeyCode); });
        return entry;
    };
    enter(m_controls.txtChanAtten(index), &frmChannels::txtChanAtten_KeyUp);
    enter(m_controls.txtChanInputAtten(index), &frmChannels::txtChanInputAtten_KeyUp);
    enter(m_controls.txtChanAGCoffset(index), &frmChannels::txtChanAGCoffset_KeyUp);
    const auto *frequency = enter(m_controls.txtChanFreq(index), &frmChannels::txtChanFreq_KeyUp);
    connect(frequency, &EntryEvents::DblClick, this,
            [this, index] { txtChanFreq_DblClick(index); });
}

// The same keys recall presets in the main window; here they go to the channels.
void frmChannels::addShortcuts()
{
    for (int index = 1; index <= channelCount; ++index) {
        const auto keys = QStringLiteral("Ctrl+%1").arg(index);
        const auto *shortcut = new QShortcut(QKeySequence(keys), this);
        connect(shortcut, &QShortcut::activated, this, [this, index] { goToChannel(index); });
    }
    for (int tab = 0; tab * channelsPerTab < channelCount; ++tab) {
        const int first = tab * channelsPerTab + 1;
        tabsChannels->setTabToolTip(tab, tr("Ctrl+%1 to Ctrl+%2 go to these channels")
                                             .arg(first)
                                             .arg(first + channelsPerTab - 1));
        m_labels.lblChannel(tab)->setToolTip(
            tr("Ctrl and a channel's number goes to it; the space bar makes it the active one"));
    }
}

// To the frequency of the active channel; any other has to be made the active one first.
void frmChannels::goToChannel(int index)
{
    const ChannelRowControls row = rowOf(m_controls, index);
    if (row.optPortNum->isHidden())
        return;
    tabsChannels->setCurrentIndex((index - 1) / channelsPerTab);
    const bool canTune =
        row.optPortNum->isChecked() && row.txtChanFreq->isVisible() && row.txtChanFreq->isEnabled();
    QWidget *control = row.optPortNum;
    if (canTune)
        control = row.txtChanFreq;
    control->setFocus(Qt::ShortcutFocusReason);
}

// A tab without rows says so.
bool frmChannels::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ShowToParent || event->type() == QEvent::HideToParent)
        for (int index = 1; index <= channelCount; ++index)
            if (watched == m_controls.optPortNum.all().value(index))
                updateNoUnitLine((index - 1) / channelsPerTab);
    return QMainWindow::eventFilter(watched, event);
}

void frmChannels::updateNoUnitLine(int tab)
{
    QLabel *line = m_labels.lblNoUnit.all().value(tab);
    if (!line)
        return;
    bool none = true;
    const int first = tab * channelsPerTab + 1;
    for (int index = first; index < first + channelsPerTab; ++index)
        none = none && m_controls.optPortNum(index)->isHidden();
    line->setVisible(none);
}

void frmChannels::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        Form_KeyPress(escapeCharacter);
    QMainWindow::keyPressEvent(event);
}

void frmChannels::showProgressLine(const QString &text)
{
    SearchStrip::sayIn(*this, text, &cancelRunning);
}
