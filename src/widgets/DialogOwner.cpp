// Who owns the boxes.
#include "widgets/DialogOwner.h"

#include <QApplication>
#include <QWidget>

QWidget *dialogOwner()
{
    QWidget *owner = QApplication::activeWindow();
    while (owner && owner->testAttribute(Qt::WA_DeleteOnClose))
        owner = owner->parentWidget() ? owner->parentWidget()->window() : nullptr;
    return owner;
}
