// The dialog under the program's entry boxes.
#include "ui/dialogs/EntryDialog.h"

#include "platform/Application.h"

#include <QKeyEvent>
#include <QLineEdit>

EntryDialog::EntryDialog(QWidget *owner) : QDialog(owner) {}

void EntryDialog::load()
{
    QFont arial = font();
    arial.setFamily(QStringLiteral("Arial"));
    setFont(arial);
    setWindowTitle(QStringLiteral("  ") + applicationTitle());
}

// The style sheet makes the hidden character a plain "*" in every style.
void EntryDialog::setCharactersHidden(QLineEdit &entry, bool hide)
{
    entry.setStyleSheet(QStringLiteral("QLineEdit { lineedit-password-character: 42; }"));
    entry.setEchoMode(hide ? QLineEdit::Password : QLineEdit::Normal);
}

void EntryDialog::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    onShown();
}

void EntryDialog::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        onEscape();
    else
        QDialog::keyPressEvent(event);
}
