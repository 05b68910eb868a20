// The panelled status bar over permanent widgets of QStatusBar.
#include "widgets/PanelStatusBar.h"

#include "platform/RunTimeError.h"

#include "widgets/PlainText.h"

#include <QLabel>
#include <QPainter>

namespace {

class PanelLabel : public QLabel
{
public:
    using QLabel::QLabel;

    QSize sizeHint() const override { return {0, QLabel::sizeHint().height()}; }
    QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        const QRect inside = contentsRect().adjusted(4, 0, -4, 0);
        const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, inside.width());
        QFrame::paintEvent(event); // the frame alone: NOLINT(bugprone-parent-virtual-call)
        QPainter painter(this);
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(inside, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, shown);
    }
};

} // namespace

PanelStatusBar::PanelStatusBar(QWidget *parent) : QStatusBar(parent)
{
    setObjectName(QStringLiteral("StatusBar"));
}

void PanelStatusBar::setPanels(const QList<int> &stretches)
{
    for (const int stretch : stretches) {
        auto *panel = new PanelLabel(this);
        panel->setTextFormat(Qt::PlainText);
        panel->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
        panel->setObjectName(QStringLiteral("StatusBar_%1").arg(m_panels.size() + 1));
        m_panels.append(panel);
        addPermanentWidget(panel, stretch);
        setPanelText(panelCount(), QString());
    }
}

void PanelStatusBar::addTool(QWidget *tool, int stretch)
{
    addPermanentWidget(tool, stretch);
}

QLabel *PanelStatusBar::panelAt(int panel) const
{
    if (panel < 1 || panel > m_panels.size())
        throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
    return m_panels.at(panel - 1);
}

QString PanelStatusBar::panelText(int panel) const
{
    return panelAt(panel)->text();
}

void PanelStatusBar::setPanelText(int panel, const QString &text)
{
    QLabel *label = panelAt(panel);
    label->setText(text);
    label->setToolTip(plainToolTip(text.trimmed()));
    label->setAccessibleName(tr("status %1: %2").arg(panel).arg(text.trimmed()));
}
