// The scrolling content of a window.
#include "widgets/ScrollPane.h"

#include <QBoxLayout>
#include <QEvent>
#include <QMainWindow>
#include <QScrollBar>

static constexpr int fewestColumns = 10; // of the font's height: what is worth scrolling in
static constexpr int fewestRows = 5;

ScrollPane::ScrollPane(QWidget *content, QWidget *parent) : QScrollArea(parent), m_content(content)
{
    setObjectName(QStringLiteral("scrollPane"));
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setFocusPolicy(Qt::NoFocus); // the content's controls have it
    content->setParent(viewport());
    content->installEventFilter(this);
    horizontalScrollBar()->setObjectName(QStringLiteral("scrollAcross"));
    horizontalScrollBar()->setAccessibleName(tr("scroll across"));
    verticalScrollBar()->setObjectName(QStringLiteral("scrollDown"));
    verticalScrollBar()->setAccessibleName(tr("scroll up and down"));
}

QSize ScrollPane::sizeHint() const
{
    return m_content->sizeHint()
        .expandedTo(m_content->minimumSizeHint())
        .expandedTo(m_content->minimumSize());
}

// The area lays its content out when it gets it: that is for when it is first shown.
bool ScrollPane::event(QEvent *event)
{
    if (event->type() == QEvent::Show && widget() != m_content) {
        setWidget(m_content);
        m_content->setAutoFillBackground(false);
    }
    return QScrollArea::event(event);
}

// Qt's own area does not tell its window when its content wants another size.
bool ScrollPane::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_content && event->type() == QEvent::LayoutRequest)
        updateGeometry();
    return QScrollArea::eventFilter(watched, event);
}

QSize ScrollPane::minimumSizeHint() const
{
    const int em = fontMetrics().height();
    return m_content->minimumSizeHint().boundedTo({em * fewestColumns, em * fewestRows});
}

ScrollPane *ScrollPane::wrap(QMainWindow &window)
{
    auto *pane = new ScrollPane(window.takeCentralWidget(), &window);
    window.setCentralWidget(pane);
    return pane;
}

ScrollPane *ScrollPane::wrap(QBoxLayout &column, QWidget *content)
{
    const int place = column.indexOf(content);
    column.removeWidget(content);
    auto *pane = new ScrollPane(content, column.parentWidget());
    column.insertWidget(place, pane, 1);
    return pane;
}
