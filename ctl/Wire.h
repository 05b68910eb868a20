// Both sides of the wire of one serial port: what was sent last, whether it was answered, and, when
// wanted, each line as it passes.
#pragma once

#include "port/clsCommPort.h"

#include <QByteArray>
#include <QObject>

class Wire : public QObject
{
    Q_OBJECT

public:
    // Shows lines on standard error: "COM3 > *ID?", "COM3 < KELDO-X".
    Wire(clsCommPort &port, bool shows);
    ~Wire() override;

    // The line sent last has got not one byte.
    bool isSilent() const { return m_awaits && m_received == 0; }
    bool isComplete() const { return m_complete; } // its reply has come to its carriage return
    void forget();                                 // nothing has been sent

private:
    void onSent(const QByteArray &bytes);
    void onReceived(const QByteArray &bytes);
    void showReply(const QString &note = {});
    void showMissing();
    void show(const char *direction, const QString &text) const;

    const clsCommPort &m_port;
    bool m_shows;
    bool m_awaits = false;
    bool m_complete = false;
    qsizetype m_received = 0; // bytes
    QByteArray m_line;
};
