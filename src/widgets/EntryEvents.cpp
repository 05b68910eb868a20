// The entry events, seen through an event filter.
#include "widgets/EntryEvents.h"

#include <QKeyEvent>
#include <QWidget>

static bool isEnter(QEvent *event)
{
    const auto *key = static_cast<QKeyEvent *>(event);
    return (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) && !key->isAutoRepeat();
}

EntryEvents::EntryEvents(QWidget *box) : QObject(box)
{
    box->installEventFilter(this);
}

const EntryEvents *EntryEvents::watch(QWidget *box)
{
    return new EntryEvents(box);
}

bool EntryEvents::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
        if (isEnter(event))
            m_enterIsDown = true;
        break;
    case QEvent::KeyRelease:
        if (isEnter(event) && m_enterIsDown) {
            m_enterIsDown = false;
            emit EnterUp();
        }
        break;
    case QEvent::FocusOut:
        m_enterIsDown = false;
        break;
    case QEvent::MouseButtonDblClick:
        if (static_cast<QMouseEvent *>(event)->button() == Qt::LeftButton)
            emit DblClick();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}
