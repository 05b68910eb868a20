// The dialog under the program's entry boxes: their font and caption, an entry whose characters can
// be hidden, the focus in the entry when it is shown, and Escape as the Cancel button.
#pragma once

#include <QDialog>

#include <functional>

class QLineEdit;

class EntryDialog : public QDialog
{
public:
    explicit EntryDialog(QWidget *owner);

    void load();                                                  // font and caption
    static void setCharactersHidden(QLineEdit &entry, bool hide); // "*" for every character

    std::function<void()> onShown;
    std::function<void()> onEscape;

protected:
    void showEvent(QShowEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
};
