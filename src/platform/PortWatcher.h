// Notices serial ports that are plugged in and unplugged while somebody looks at a list of them.
#pragma once

#include <QObject>
#include <QStringList>
#include <QTimer>

class PortWatcher : public QObject
{
    Q_OBJECT

public:
    explicit PortWatcher(QObject *parent = nullptr);

    // Looks about once a second from now on. What is there now is no news.
    void start();
    void stop() { m_timer.stop(); }

signals:
    void Changed();

private:
    static QStringList present();
    void look();

    QTimer m_timer;
    QStringList m_before;
};
