// A receiver that tells its frequency over the network: a line "f" is answered by hertz on a line,
// or by "RPRT -n" where it cannot tell. Asked at an interval, waited for when it goes away. It
// connects and listens to nobody.
#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QTcpSocket>
#include <QTimer>

class Receiver : public QObject
{
    Q_OBJECT

public:
    static constexpr quint16 standardPort = 4532;
    static constexpr qsizetype longestLine = 256; // bytes; of an answer

    struct Place
    {
        QString host;
        quint16 port = 0; // 0: no place
    };
    // "host", "host:4532", "[::1]:4532".
    static Place placeOf(const QString &text);

    Receiver(Place place, int interval, int timeout, QObject *parent = nullptr); // ms
    ~Receiver() override;

    void start();

signals:
    void Tuned(double megahertz);      // at every good answer
    void Lost(const QString &why);     // the connection, or its making; tried again in a while
    void Puzzling(const QString &why); // it answers, but no frequency

private:
    void connectAgain();
    void ask();
    void onReadyRead();
    void judge(const QByteArray &line);
    void lose(const QString &why);

    Place m_place;
    QTcpSocket m_socket;
    QTimer m_next;     // the next question, or the next try to connect
    QTimer m_deadline; // of the answer, or of the connection
    int m_interval;
    int m_timeout;
    int m_backOff;
    bool m_asked = false;
    QByteArray m_line;
};
