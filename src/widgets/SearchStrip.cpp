// The search strip.
#include "widgets/SearchStrip.h"

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
    m_line->setMargin(fontMetrics().averageCharWidth() / 2);
    m_cancel->setObjectName(QStringLiteral("cmdCancelSearch"));
    m_cancel->setToolTip(tr("End the search or the connection (Esc)"));
    m_cancel->setAutoDefault(false);
    addWidget(m_line);
    addWidget(m_cancel);
    connect(m_cancel, &QPushButton::clicked, this, &SearchStrip::Cancelled);
    window->addToolBar(Qt::BottomToolBarArea, this);
    hide();
}

QString SearchStrip::text() const
{
    return m_line->text();
}

void SearchStrip::say(const QString &text)
{
    m_line->setText(text);
    m_line->setAccessibleName(text);
    setVisible(!text.isEmpty());
}
