// What carries the bytes of an opened port: the system's serial port, or a line that lies in
// memory.
#pragma once

#include <QByteArray>
#include <QObject>
#include <QSerialPort>
#include <QString>

#include <functional>
#include <memory>

class SerialLine : public QObject
{
    Q_OBJECT

public:
    struct Settings
    {
        int baud = 9600;
        QSerialPort::Parity parity = QSerialPort::NoParity;
        QSerialPort::DataBits dataBits = QSerialPort::Data8;
        QSerialPort::StopBits stopBits = QSerialPort::OneStop;
    };

    // Raises 8002, 8005, 8012 or 8015 with the cause and its remedy.
    virtual void open(const QString &location, const Settings &settings) = 0;
    virtual void close() = 0;
    virtual bool isOpen() const = 0;

    virtual QByteArray readAll() = 0; // what has arrived
    virtual void write(const QByteArray &bytes) = 0;
    virtual qint64 bytesToWrite() const = 0; // that have not left yet

    // Throw away what the system still holds, or has not sent.
    virtual void clearInput() = 0;
    virtual void clearOutput() = 0;
    // Whether bytes have arrived that the line has not taken over yet.
    virtual bool holdsInput() const = 0;

    virtual void setDataTerminalReady(bool on) = 0;
    virtual void setRequestToSend(bool on) = 0;

    // A new line over the system's serial port.
    static std::unique_ptr<SerialLine> make();
    using Maker = std::function<std::unique_ptr<SerialLine>()>;

signals:
    void Arrived();
    // The device went away; the line still counts as open.
    void Gone();
};
