// The line at the foot of a window that says what a search or a connection is at, with a button
// that ends it. Hidden while nothing runs.
#pragma once

#include <QToolBar>

class QLabel;
class QMainWindow;
class QPushButton;

class SearchStrip : public QToolBar
{
    Q_OBJECT

public:
    // Says it in the strip of the window, made with the first text; its button calls cancel.
    static void sayIn(QMainWindow &window, const QString &text, void (*cancel)());

    // Stands at the window's foot, above the status bar.
    explicit SearchStrip(QMainWindow *window);

    // An empty text hides the strip.
    void say(const QString &text);
    QString text() const;

signals:
    void Cancelled();

private:
    void setShown(bool shown);

    QLabel *m_line;
    QPushButton *m_cancel;
};
