// The unit of measure that follows its box.
#include "ui/channels/UnitLabel.h"

#include <QEvent>

UnitLabel::UnitLabel(const QString &unit, QWidget *box)
    : QLabel(unit, box->parentWidget()), m_box(box)
{
    setTextFormat(Qt::PlainText);
    box->installEventFilter(this);
}

bool UnitLabel::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_box) {
        if (event->type() == QEvent::ShowToParent || event->type() == QEvent::HideToParent)
            setVisible(!m_box->isHidden());
        else if (event->type() == QEvent::EnabledChange)
            setEnabled(m_box->isEnabledTo(parentWidget()));
    }
    return QLabel::eventFilter(watched, event);
}
