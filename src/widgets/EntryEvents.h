// What a text box for numbers tells its window: Enter was released in it, or it was double-clicked.
#pragma once

#include <QObject>

class QWidget;

class EntryEvents : public QObject
{
    Q_OBJECT

public:
    // Watches the box and lives as long as it does. An editable combo box is watched itself: it has
    // the focus, and hands the keys to its line edit past any filter there.
    explicit EntryEvents(QWidget *box);
    static const EntryEvents *watch(QWidget *box);

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    // Return or keypad Enter went up, and went down in this box before: the release of the Enter
    // that closed a message box does not count.
    void EnterUp();
    void DblClick(); // left button

private:
    bool m_enterIsDown = false;
};
