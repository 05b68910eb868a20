// The dialog under the program's entry boxes: the focus goes to the entry when it is shown, and
// Escape is the Cancel button.
#pragma once

#include <QDialog>
#include <QKeyEvent>

#include <functional>

class EntryDialog : public QDialog
{
public:
    using QDialog::QDialog;

    std::function<void()> onShown;
    std::function<void()> onEscape;

protected:
    void showEvent(QShowEvent *event) override
    {
        QDialog::showEvent(event);
        onShown();
    }

    void keyPressEvent(QKeyEvent *event) override
    {
        if (event->key() == Qt::Key_Escape)
            onEscape();
        else
            QDialog::keyPressEvent(event);
    }
};
