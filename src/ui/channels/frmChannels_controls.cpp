// How the channels window is built: tabs of four rows under one set of column headers, and the
// status bar. Columns stand in the same places on every tab.
#include "ui/channels/frmChannels.h"

#include "app/Words.h"
#include "core/TextNumbers.h"
#include "ui/channels/UnitLabel.h"
#include "widgets/PanelStatusBar.h"
#include "widgets/ScrollPane.h"

#include <QGridLayout>
#include <QProgressBar>
#include <QTabWidget>

#include <array>

namespace {

enum Column {
    PortColumn,
    FreqColumn,
    AttenColumn,
    InputAttenColumn,
    AGCColumn,
    AGCOffsetColumn,
    BypassColumn,
    ColumnCount,
};

// Grid rows: the headers, the line for a tab without units, four channels.
constexpr int headerRow = 0;
constexpr int noUnitRow = 1;
constexpr int firstRow = 2;

// "channel 3 attenuation, dB"
QString accessible(int index, const QString &what)
{
    return QObject::tr("channel %1 %2").arg(index).arg(what);
}

QLineEdit *makeBox(QWidget *page, const QString &name, const QString &tip)
{
    auto *box = new QLineEdit(page);
    box->setAccessibleName(name);
    box->setToolTip(tip);
    box->setAlignment(Qt::AlignRight);
    // As wide as its column, which is alike on tabs with and without rows.
    box->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    return box;
}

UpDown *makeArrows(QLineEdit *box, const QString &name)
{
    auto *arrows = new UpDown(box->parentWidget());
    arrows->setBox(box);
    arrows->setAccessibleName(name);
    return arrows;
}

QCheckBox *makeCheck(QWidget *page, const QString &name)
{
    auto *check = new QCheckBox(page);
    check->setAccessibleName(name);
    return check;
}

QLabel *makeLabel(QWidget *page, const QString &text)
{
    auto *label = new QLabel(text, page);
    label->setTextFormat(Qt::PlainText);
    return label;
}

void addCell(QGridLayout &grid, int row, int column, std::initializer_list<QWidget *> controls)
{
    auto *cell = new QHBoxLayout;
    cell->setSpacing(grid.parentWidget()->fontMetrics().averageCharWidth() / 2);
    for (QWidget *control : controls)
        cell->addWidget(control, qobject_cast<QLineEdit *>(control) ? 1 : 0);
    grid.addLayout(cell, row, column);
}

std::array<QWidget *, 13> controlsOfRow(const ChannelRowControls &row)
{
    return {row.optPortNum,        row.lblPortNum,   row.txtChanFreq,
            row.txtChanAtten,      row.udAtten,      row.lbldB,
            row.txtChanInputAtten, row.udInputAtten, row.chkChanAGC,
            row.txtChanAGCoffset,  row.udAGCOffset,  row.lblAGCdB,
            row.chkChanBYP};
}

int rowOnPage(int index)
{
    return firstRow + (index - 1) % channelsPerTab;
}

} // namespace

void frmChannels::buildTabs()
{
    tabsChannels = new QTabWidget(this);
    tabsChannels->setObjectName(QStringLiteral("tabsChannels"));
    tabsChannels->setAccessibleName(tr("channels"));
    m_controls.portOptions = new OptionSet(this);
    // The last caption begins with a blank, as it always did.
    const QStringList captions{QStringLiteral("Channels 1 - 4"), QStringLiteral("Channels 5 - 8"),
                               QStringLiteral("Channels 9 - 12"),
                               QStringLiteral(" Channels 13 - 16")};
    for (int tab = 0; tab < channelTabs; ++tab) {
        m_grids.append(buildPage(tab));
        auto *pane = new ScrollPane(m_grids.last()->parentWidget()->parentWidget(), tabsChannels);
        tabsChannels->addTab(pane, captions.at(tab));
    }
    for (int index = 1; index <= channelCount; ++index)
        hideRow(index);
    setCentralWidget(tabsChannels);
}

// The grid fills its tab up to half as wide again as it needs: boxes of three digits want no more.
QGridLayout *frmChannels::buildPage(int tab)
{
    auto *page = new QWidget(tabsChannels);
    auto *beside = new QHBoxLayout(page);
    beside->setContentsMargins(0, 0, 0, 0);
    auto *content = new QWidget(page);
    beside->addWidget(content, 1);
    beside->addStretch(0);
    auto *grid = new QGridLayout(content);
    const int em = page->fontMetrics().height();
    grid->setContentsMargins(em, em, em, em);
    grid->setHorizontalSpacing(em * 3 / 2);
    grid->setVerticalSpacing(em / 2);
    buildHeader(*grid, tab);
    const int first = tab * channelsPerTab + 1;
    for (int index = first; index < first + channelsPerTab && index <= channelCount; ++index)
        buildRow(*grid, index);

    auto *none = makeLabel(
        content,
        tr("No units are bound to channels %1 to %2.").arg(first).arg(first + channelsPerTab - 1));
    none->setForegroundRole(QPalette::PlaceholderText);
    none->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred); // the columns decide
    m_labels.lblNoUnit.insert(tab, none);
    grid->addWidget(none, noUnitRow, 0, 1, ColumnCount);
    grid->setRowStretch(firstRow + channelsPerTab, 1);
    return grid;
}

void frmChannels::addHeader(QGridLayout &grid, ControlArray<QLabel> &labels, int tab, int column,
                            const QString &caption)
{
    QLabel *label = makeLabel(grid.parentWidget(), caption);
    QFont bold = label->font();
    bold.setBold(true);
    label->setFont(bold);
    labels.insert(tab, label);
    const bool isCheck = column == AGCColumn || column == BypassColumn;
    grid.addWidget(label, headerRow, column, isCheck ? Qt::AlignHCenter : Qt::AlignLeft);
}

void frmChannels::buildHeader(QGridLayout &grid, int tab)
{
    addHeader(grid, m_labels.lblChannel, tab, PortColumn, QStringLiteral("channel"));
    addHeader(grid, m_labels.lblChanFreq, tab, FreqColumn, QStringLiteral("frequency"));
    addHeader(grid, m_labels.lblChanAtten, tab, AttenColumn, QStringLiteral("attenuation"));
    addHeader(grid, m_labels.lblChanInputAtten, tab, InputAttenColumn,
              QStringLiteral("input attn"));
    addHeader(grid, m_labels.lblChanAGC, tab, AGCColumn, QStringLiteral("AGC"));
    addHeader(grid, m_labels.lblChanAGCOffset, tab, AGCOffsetColumn, QStringLiteral("AGC offset"));
    addHeader(grid, m_labels.lblChanBypass, tab, BypassColumn, QStringLiteral("bypass"));
}

// In the order of the Tab key.
void frmChannels::buildRow(QGridLayout &grid, int index)
{
    buildPort(grid, index);
    buildFrequency(grid, index);
    buildAttenuations(grid, index);
    buildAGC(grid, index);
    buildBypass(grid, index);
}

void frmChannels::buildPort(QGridLayout &grid, int index)
{
    QWidget *page = grid.parentWidget();
    auto *option = new QRadioButton(numberToTextWithBlank(index), page);
    option->setAccessibleName(accessible(index, tr("make this the active channel")));
    option->installEventFilter(this);
    m_controls.optPortNum.insert(index, option);
    m_controls.portOptions->add(index, option);
    QLabel *port = makeLabel(page, QString());
    m_controls.lblPortNum.insert(index, port);
    addCell(grid, rowOnPage(index), PortColumn, {option, port});
}

void frmChannels::buildFrequency(QGridLayout &grid, int index)
{
    QWidget *page = grid.parentWidget();
    auto *box = makeBox(page, accessible(index, tr("frequency, MHz")),
                        tr("Type a frequency in MHz and press Enter"));
    m_controls.txtChanFreq.insert(index, box);
    addCell(grid, rowOnPage(index), FreqColumn, {box, new UnitLabel(QStringLiteral("MHz"), box)});
}

void frmChannels::buildAttenuations(QGridLayout &grid, int index)
{
    QWidget *page = grid.parentWidget();
    const QString dB = QStringLiteral("dB");
    auto *box = makeBox(page, accessible(index, tr("attenuation, dB")),
                        tr("Type an attenuation in dB and press Enter"));
    auto *arrows = makeArrows(box, accessible(index, tr("attenuation, up and down")));
    m_controls.txtChanAtten.insert(index, box);
    m_controls.udAtten.insert(index, arrows);
    m_controls.lbldB.insert(index, makeLabel(page, dB));
    addCell(grid, rowOnPage(index), AttenColumn, {box, arrows, m_controls.lbldB(index)});

    box = makeBox(page, accessible(index, tr("input attenuation, dB")),
                  tr("Type an input attenuation in dB and press Enter"));
    arrows = makeArrows(box, accessible(index, tr("input attenuation, up and down")));
    m_controls.txtChanInputAtten.insert(index, box);
    m_controls.udInputAtten.insert(index, arrows);
    addCell(grid, rowOnPage(index), InputAttenColumn, {box, arrows, new UnitLabel(dB, box)});
}

void frmChannels::buildAGC(QGridLayout &grid, int index)
{
    QWidget *page = grid.parentWidget();
    auto *check = makeCheck(page, accessible(index, tr("automatic gain control")));
    check->setToolTip(tr("Automatic gain control"));
    m_controls.chkChanAGC.insert(index, check);
    grid.addWidget(check, rowOnPage(index), AGCColumn, Qt::AlignCenter);

    auto *box = makeBox(page, accessible(index, tr("AGC offset, dB")),
                        tr("Type an AGC offset in dB and press Enter"));
    auto *arrows = makeArrows(box, accessible(index, tr("AGC offset, up and down")));
    m_controls.txtChanAGCoffset.insert(index, box);
    m_controls.udAGCOffset.insert(index, arrows);
    m_controls.lblAGCdB.insert(index, makeLabel(page, QStringLiteral("dB")));
    addCell(grid, rowOnPage(index), AGCOffsetColumn, {box, arrows, m_controls.lblAGCdB(index)});
}

void frmChannels::buildBypass(QGridLayout &grid, int index)
{
    auto *check = makeCheck(grid.parentWidget(), accessible(index, tr("bypass")));
    check->setToolTip(tr("Bypass the filter"));
    m_controls.chkChanBYP.insert(index, check);
    grid.addWidget(check, rowOnPage(index), BypassColumn, Qt::AlignCenter);
}

void frmChannels::layOut()
{
    const int boxWidth = fontMetrics().horizontalAdvance(QStringLiteral("1234.56789"));
    const int portWidth = fontMetrics().horizontalAdvance(QStringLiteral("COM255:"));
    for (int index = 1; index <= channelCount; ++index) {
        const ChannelRowControls row = rowOf(controls(), index);
        for (QLineEdit *box :
             {row.txtChanFreq, row.txtChanAtten, row.txtChanInputAtten, row.txtChanAGCoffset})
            box->setMinimumWidth(boxWidth);
        row.lblPortNum->setMinimumWidth(portWidth);
    }
    alignTabs();
}

// Every tab gets the column widths and row heights of a full one, so that nothing moves when rows
// come and go or another tab is shown.
void frmChannels::alignTabs()
{
    QList<QWidget *> hidden;
    for (QWidget *control : controlsOfRow(rowOf(m_controls, 1)))
        if (control->isHidden())
            hidden.append(control);
    for (QWidget *control : hidden) // without a size as long as they are
        control->setVisible(true);
    const QGridLayout *full = m_grids.first();
    const int rowHeight = full->itemAtPosition(firstRow, AttenColumn)->sizeHint().height();
    for (int column = 0; column < ColumnCount; ++column) {
        const int header = full->itemAtPosition(headerRow, column)->sizeHint().width();
        const int cell = full->itemAtPosition(firstRow, column)->minimumSize().width();
        const bool isBox = column == FreqColumn || column == AttenColumn ||
                           column == InputAttenColumn || column == AGCOffsetColumn;
        for (QGridLayout *grid : m_grids) {
            grid->setColumnMinimumWidth(column, qMax(header, cell));
            grid->setColumnStretch(column, isBox ? 1 : 0);
        }
    }
    for (QWidget *control : hidden)
        control->setVisible(false);
    for (QGridLayout *grid : m_grids) {
        for (int row = firstRow; row < firstRow + channelsPerTab; ++row)
            grid->setRowMinimumHeight(row, rowHeight);
        QWidget *content = grid->parentWidget();
        content->setMaximumWidth(content->minimumSizeHint().width() * 3 / 2);
    }
}

void frmChannels::hideRow(int index)
{
    for (QWidget *control : controlsOfRow(rowOf(m_controls, index)))
        control->setVisible(false);
}

void frmChannels::buildStatusBar()
{
    StatusBar = new PanelStatusBar(this);
    StatusBar->setPanels({4, 4, 3, 3, 1});
    ProgressBar1 = new QProgressBar(StatusBar);
    ProgressBar1->setObjectName(QStringLiteral("ProgressBar1"));
    ProgressBar1->setAccessibleName(tr("progress of the port search"));
    ProgressBar1->setTextVisible(false);
    ProgressBar1->setMaximumHeight(fontMetrics().height());
    StatusBar->addTool(ProgressBar1, 3);
    ProgressBar1->hide();
    setStatusBar(StatusBar);
}
