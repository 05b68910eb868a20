// A line over QSerialPort.
#pragma once

#include "platform/SerialLine.h"

class SystemLine : public SerialLine
{
    Q_OBJECT

public:
    SystemLine();

    void open(const QString &location, const Settings &settings) override;
    void close() override { m_port.close(); }
    bool isOpen() const override { return m_port.isOpen(); }

    QByteArray readAll() override { return m_port.readAll(); }
    void write(const QByteArray &bytes) override;
    qint64 bytesToWrite() const override { return m_port.bytesToWrite(); }

    void clearInput() override { m_port.clear(QSerialPort::Input); }
    void clearOutput() override { m_port.clear(QSerialPort::Output); }
    bool holdsInput() const override;

    // Pseudo-terminals know no modem lines and refuse both; a unit does not need to care.
    void setDataTerminalReady(bool on) override;
    void setRequestToSend(bool on) override;

private:
    void onError(QSerialPort::SerialPortError error);

    QSerialPort m_port;
    bool m_opening = false;
    bool m_sending = false;
};
