// The polite end.
#include "app/PoliteEnd.h"

#include "app/AppState.h"
#include "platform/EventQueue.h"

#include <QCoreApplication>
#include <QEvent>

PoliteEnd::PoliteEnd()
{
    connect(&m_requests, &EndRequests::Requested, this, &PoliteEnd::end);
    QCoreApplication::instance()->installEventFilter(this);
}

PoliteEnd::~PoliteEnd() = default;

void PoliteEnd::end()
{
    // A dialog in the middle of something refuses to close; the end of the program is not asked of
    // it.
    if (const auto window = app().mainWindow)
        window->unload();
    EventQueue::endProgram();
}

// Qt's own answer to a quit is to ask each window, and to stay when one refuses.
bool PoliteEnd::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != QCoreApplication::instance() || event->type() != QEvent::Quit)
        return QObject::eventFilter(watched, event);
    end();
    return true;
}
