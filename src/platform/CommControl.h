// The serial control: one serial port in the vocabulary of comm controls (port number, settings,
// port open, thresholds, input, output, comm event, error numbers 8000 to 8021).
#pragma once

#include "platform/PortDirectory.h"
#include "platform/SerialLine.h"

class CommControl : public QObject
{
    Q_OBJECT

public:
    enum CommEvent { NoEvent = 0, ReceiveEvent = 2 };

    explicit CommControl(QObject *parent = nullptr);

    // COM number. Raises 8000 while the port is open and 8002 for a number below 1.
    int commPort() const { return m_commPort; }
    void setCommPort(int number);

    // "19200,N,8,1": baud, parity (N E O M S), data bits, stop bits. Raises 380 when it is not.
    QString settings() const { return m_settings; }
    void setSettings(const QString &settings);

    // 1: a comm event for received bytes; 0: none, input is read when asked for.
    int RThreshold() const { return m_rThreshold; }
    void setRThreshold(int bytes) { m_rThreshold = bytes; }
    // Characters that one read of the input takes; 0 takes all.
    int InputLen() const { return m_inputLen; }
    void setInputLen(int characters) { m_inputLen = characters; }
    // The two modem lines; what is set on a closed port holds from its opening.
    bool DTREnable() const { return m_dtr; }
    void setDTREnable(bool on);
    bool RTSEnable() const { return m_rts; }
    void setRTSEnable(bool on);

    // Bytes kept when nobody reads; more than that is lost, as an overrun on the line would be.
    int InBufferSize() const { return m_inBufferSize; }
    void setInBufferSize(int bytes) { m_inBufferSize = bytes; }
    // Bytes waiting. Inside a comm event only those that the event hands over.
    int inBufferCount() const;
    // Throws away whatever waits, also what the system still holds.
    void discardInput();
    // Throws away what has not left the port yet.
    void discardOutput();

    // Raises 8005 when the port is open or held by another program, 8002 when the number has no
    // device, 8012 when access is not permitted, 8015 when the line cannot be set up.
    bool portOpen() const { return m_line->isOpen(); }
    void setPortOpen(bool open);

    // Takes waiting bytes as Latin-1 text, as many as InputLen says. Empty on a closed port.
    QString input();

    // Sends the text as Latin-1 bytes. Raises 8018 on a closed port, 8019 when the unit has taken
    // nothing for so long that the queue is full.
    void output(const QString &text);

    // The event that OnComm is raised for.
    int commEvent() const { return m_commEvent; }

    // Most bytes handed to one comm event.
    static constexpr int eventLimit = 97;

    // What the operator knows the opened port by: "/dev/ttyUSB0".
    QString deviceName() const { return m_deviceName; }

signals:
    void OnComm();
    // The device went away; the port is closed already. Raised once.
    void HungUp();
    // What really passed the line, before line feeds are swallowed or late bytes discarded.
    void BytesSent(const QByteArray &bytes);
    void BytesReceived(const QByteArray &bytes);

private:
    void openPort();
    void carryBy(std::unique_ptr<SerialLine> line);
    void carryFor(const PortDirectory::Device &device);
    void takeReceived();
    void scheduleCommEvent();
    void raiseCommEvent();
    void onGone();
    qsizetype unitLength() const;

    std::unique_ptr<SerialLine> m_line;
    std::shared_ptr<PortProcess> m_behind; // at the end of the line; none at a system's device
    SerialLine::Settings m_lineSettings;
    QString m_deviceName;
    QString m_settings = QStringLiteral("9600,N,8,1");
    QByteArray m_received;
    int m_commPort = 1;
    int m_rThreshold = 0;
    int m_inputLen = 0;
    int m_inBufferSize = 1024;
    int m_commEvent = NoEvent;
    int m_eventBudget = -1; // bytes left to the running comm event; -1 outside of one
    bool m_dtr = true;
    bool m_rts = true;
    bool m_afterCarriageReturn = false;
    bool m_eventScheduled = false;
};
