// A process that stands behind a port: it reads what is sent and prints what arrives. The first
// opening starts it, and it runs on while the port is closed, as a unit stays switched on. When it
// ends, the port was unplugged; the next opening plugs it in again.
#pragma once

#include <QProcess>

class PortProcess : public QObject
{
    Q_OBJECT

public:
    PortProcess(const QString &program, const QStringList &arguments);
    ~PortProcess() override; // ends the process

    // One user at a time: raises 8005, or 8002 when it cannot be started.
    void open(const QString &name);
    void close();

    QByteArray readAll() { return m_process.readAll(); }
    bool holdsInput() const { return m_process.bytesAvailable() > 0; }
    void write(const QByteArray &bytes);
    qint64 bytesToWrite() const { return m_unsent.size() + m_process.bytesToWrite(); }
    void clearOutput() { m_unsent.clear(); }

signals:
    // While it is open.
    void Arrived();
    void Gone();

private:
    void onArrived();
    void onEnded();
    void sendOn();

    QProcess m_process;
    QByteArray m_unsent; // behind what the process was handed last: that cannot be taken back
    bool m_open = false;
};
