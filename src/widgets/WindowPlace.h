// Keeps where a window stood from one run to the next.
#pragma once

#include <QObject>
#include <QSize>
#include <QString>

class QWidget;

// What the window's screen offers to a window without its frame.
QSize roomOnScreen(const QWidget &window);
// What of the wanted size the window's screen has room for.
QSize withinScreen(const QWidget &window, const QSize &wanted);

// So many pixels of the window's height are for something that passes, like a search's strip: no
// place is kept with them.
void setPassingHeight(QWidget &window, int pixels);
int passingHeight(const QWidget &window);

// Puts the window where it was left and stores its place whenever it is hidden, in the user's
// settings under "Geometry" and the name. A stored place that is nonsense, or on a screen that is
// gone, is ignored. Lives as long as the window.
class WindowPlace : public QObject
{
    Q_OBJECT

public:
    WindowPlace(QWidget *window, QString name);
    static void keep(QWidget &window, const QString &name);

    static QString section();
    static QString key(const QString &name);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void restore();
    void save() const;

    QWidget *m_window;
    QString m_name;
};
