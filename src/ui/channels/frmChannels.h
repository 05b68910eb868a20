// The channels window: one row of controls for each channel, four rows to a tab. It owns the
// controls; every control event is forwarded to the channel of the control's index.
#pragma once

#include "app/Views.h"
#include "ui/channels/ChannelControls.h"
#include "ui/channels/ChannelsHost.h"
#include "widgets/LateWindow.h"

#include <cstdint>
#include <memory>

class PanelStatusBar;
class QGridLayout;
class QProgressBar;
class QTabWidget;
class clsChannel;
class clsKeldoX;

class frmChannels : public LateWindow, public ChannelsView, public ChannelsHost
{
    Q_OBJECT

public:
    static constexpr int escapeCharacter = 27;

    frmChannels();
    ~frmChannels() override;

    // What the channels ask of the window.
    const ChannelControls &controls() override;
    void bindRow(int index, std::weak_ptr<clsChannel> channel) override;

    // What connecting and searching tell the window.
    void load() override; // Form_Load
    void show() override; // in front
    void setDevice(std::shared_ptr<clsKeldoX> device) override;
    void setStatusPanel(int panel, const QString &text) override;
    void showNotConnected() override;
    void setProgress(int value) override;
    void setProgressMaximum(int maximum) override;
    int progressMaximum() const override;
    void setProgressVisible(bool visible) override;
    void prepareForSearch() override;
    void arrangeForUnitsFound() override;
    void refreshChannelDisplays() override;
    int ChanIndex() const override;
    void showProgressLine(const QString &text) override;
    bool escapePressed() const override { return m_escape; }
    void clearEscape() override { m_escape = false; }
    void clearChannelBoxes(int channel) override;

    void clearStatusBar(); // panels 1 to 10
    void ShowColumnLabelsOnTabs();
    bool isLoaded() const { return m_loaded; }

    // Control events, each with its control's index.
    void udAtten_UpClick(int index);
    void udAtten_DownClick(int index);
    void udInputAtten_UpClick(int index);
    void udInputAtten_DownClick(int index);
    void udAGCOffset_UpClick(int index);
    void udAGCOffset_DownClick(int index);
    void chkChanAGC_Click(int index);
    void chkChanBYP_Click(int index);
    void txtChanAtten_KeyUp(int index, int keyCode);
    void txtChanInputAtten_KeyUp(int index, int keyCode);
    void txtChanAGCoffset_KeyUp(int index, int keyCode);
    void optPortNum_Click(int index);
    void txtChanFreq_KeyUp(int index, int keyCode);
    void txtChanFreq_DblClick(int index);
    void Form_KeyPress(int character);

protected:
    void layOut() override;
    QSize firstSize() const override { return sizeHint(); }
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    // Element t stands on tab t, from 0.
    struct ColumnLabels
    {
        ControlArray<QLabel> lblChannel{QStringLiteral("lblChannel")};
        ControlArray<QLabel> lblChanFreq{QStringLiteral("lblChanFreq")};
        ControlArray<QLabel> lblChanAtten{QStringLiteral("lblChanAtten")};
        ControlArray<QLabel> lblChanInputAtten{QStringLiteral("lblChanInputAtten")};
        ControlArray<QLabel> lblChanAGC{QStringLiteral("lblChanAGC")};
        ControlArray<QLabel> lblChanAGCOffset{QStringLiteral("lblChanAGCOffset")};
        ControlArray<QLabel> lblChanBypass{QStringLiteral("lblChanBypass")};
        // Stands in for the rows of a tab that has none.
        ControlArray<QLabel> lblNoUnit{QStringLiteral("lblNoUnit")};
    };

    // Building, in frmChannels_controls.cpp.
    void buildTabs(); // with all rows
    void addShortcuts();
    void goToChannel(int index);
    QGridLayout *buildPage(int tab);
    void buildHeader(QGridLayout &grid, int tab);
    void addHeader(QGridLayout &grid, ControlArray<QLabel> &labels, int tab, int column,
                   const QString &caption);
    void buildRow(QGridLayout &grid, int index);
    void buildPort(QGridLayout &grid, int index);
    void buildFrequency(QGridLayout &grid, int index);
    void buildAttenuations(QGridLayout &grid, int index);
    void buildAGC(QGridLayout &grid, int index);
    void buildBypass(QGridLayout &grid, int index);
    void alignTabs();
    void buildStatusBar();
    void connectControls(int index);
    void connectBoxes(int index);
    void hideRow(int index);

    std::shared_ptr<clsChannel> channelAt(int index);
    template <class Handler, class... PutBack>
    void forward(const char *source, int index, Handler handler, const PutBack &...putBack);
    void onPortOptionClick(int index, int previous);
    void updateNoUnitLine(int tab);
    void mDevice_DUTChange();

    ChannelControls m_controls;                      // empty before controls() is called
    QList<QGridLayout *> m_grids;                    // of the tabs
    QMap<int, std::weak_ptr<clsChannel>> m_channels; // by the index of their row
    ColumnLabels m_labels;
    QTabWidget *tabsChannels = nullptr; // null before controls() is called
    QProgressBar *ProgressBar1 = nullptr;
    PanelStatusBar *StatusBar = nullptr;
    std::shared_ptr<clsKeldoX> mDevice;
    bool m_escape = false;
    bool m_loaded = false;
};
