// The search strip.
#include "widgets/SearchStrip.h"

#include "widgets/PlainText.h"
#include "widgets/WindowPlace.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMainWindow>
#include <QPushButton>

SearchStrip::SearchStrip(QMainWindow *window)
    : QToolBar(tr("Search"), window),
      m_line(new QLabel(this)),
      m_cancel(new QPushButton(tr("Cancel"), this))
{
    setObjectName(QStringLiteral("SearchStrip"));
    setMovable(false);
    setFloatable(false);
    setContextMenuPolicy(Qt::PreventContextMenu); // nobody hides it by accident
    m_line->setObjectName(QStringLiteral("lblSearchStrip"));
    m_line->setTextFormat(Qt::PlainText);
    // A long device name must not widen the window.
    m_line->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_cancel->setObjectName(QStringLiteral("cmdCancelSearch"));
    m_cancel->setToolTip(tr("End the search or the connection (Esc)"));
    m_cancel->setAutoDefault(false);
    auto *both = new QWidget(this);
    auto *layout = new QHBoxLayout(both);
    const int half = fontMetrics().averageCharWidth() / 2;
    layout->setContentsMargins(half, 0, half, 0);
    layout->addWidget(m_line, 1);
    layout->addWidget(m_cancel);
    addWidget(both);
    connect(m_cancel, &QPushButton::clicked, this, &SearchStrip::Cancelled);
    window->addToolBar(Qt::BottomToolBarArea, this);
    hide();
}

void SearchStrip::sayIn(QMainWindow &window, const QString &text, void (*cancel)())
{
    auto *strip = window.findChild<SearchStrip *>(QString(), Qt::FindDirectChildrenOnly);
    if (!strip) {
        if (text.isEmpty())
            return;
        strip = new SearchStrip(&window);
        connect(strip, &SearchStrip::Cancelled, &window, cancel);
    }
    strip->say(text);
}

QString SearchStrip::text() const
{
    return m_line->text();
}

void SearchStrip::say(const QString &text)
{
    m_line->setText(text);
    m_line->setAccessibleName(text);
    // What the line cuts off.
    m_line->setToolTip(plainToolTip(text));
    setShown(!text.isEmpty());
}

// What the window has grown by already is room for the strip too.
static int growth(const QWidget &window, int before, int wanted)
{
    if (before > 0)
        return before;
    const QSize room = withinScreen(window, window.size() + QSize(0, wanted));
    return std::max(0, room.height() - window.height());
}

// The window makes room for its new line and takes it back, where it may be sized at all: nothing
// of what it shows is covered or has to be scrolled to.
void SearchStrip::setShown(bool shown)
{
    if (shown == !isHidden())
        return;
    QWidget *top = window();
    const bool mayGrow = !top->isMaximized() && !top->isFullScreen();
    const int height = sizeHint().height();
    setVisible(shown);
    if (!mayGrow)
        return; // what it has grown by before goes when it may be sized again
    const int before = passingHeight(*top);
    const int now = shown ? growth(*top, before, height) : 0;
    setPassingHeight(*top, now);
    top->resize(top->width(), top->height() + now - before);
}
